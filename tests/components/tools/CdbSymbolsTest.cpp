#include "components/tools/CdbSymbols.h"

#include <gtest/gtest.h>

#include "components/tools/SourceDeclarations.h"
#include "support/MemoryFileSystem.h"

// Symbols from the debug information of sdcc, together with the sources.
namespace tarn::tools {
namespace {

using tarn::testing::MemoryFileSystem;

std::string LineOf(const SourceDeclaration& each) {
  return std::to_string(static_cast<int>(each.kind)) + ' ' + each.name + ':' +
         std::to_string(each.line) + ' ' + each.text + '\n';
}

std::string DeclarationsOf(const std::string& source) {
  std::string lines;
  for (const SourceDeclaration& each : FindDeclarations(source)) lines += LineOf(each);
  return lines;
}

TEST(SourceDeclarations, AreThoseOfDefinitionsAtFileLevel) {
  struct Case {
    const char* source;
    const char* found;
  };
  for (const Case& each : {
           Case{"static int twice(int a)\n{ int b = a; return b; }",
                "0 twice:1 static int twice(int a)\n"},
           Case{"void\nled_set(char n, // which\n  struct p *p)\n{}\n",
                "0 led_set:2 void led_set(char n, struct p *p)\n"},
           Case{"void isr(void) __interrupt (1) __using (2) {}",
                "0 isr:1 void isr(void) __interrupt (1) __using (2)\n"},
           Case{"struct point make(void) { struct point p; return p; } int x;",
                "0 make:1 struct point make(void)\n1 x:1 int x\n"},
           Case{"char a = 1, *b, c[2] = {1, 2}, d;",
                "1 a:1 char a\n1 b:1 char *b\n1 c:1 char c[2]\n1 d:1 char d\n"},
           Case{"static int (*handler)(char, int) = 0;",
                "1 handler:1 static int (*handler)(char, int)\n"},
           Case{"void (*const table[3])(void) = {f, g};",
                "1 table:1 void (*const table[3])(void)\n"},
           Case{"__xdata __at (0x8000) unsigned char port;",
                "1 port:1 __xdata __at (0x8000) unsigned char port\n"},
           Case{"struct s { int n; } v;\nenum { A, B } mode;",
                "2 s:1 struct s\n1 v:1 struct s {...} v\n1 mode:2 enum {...} mode\n"},
           Case{"int i = (1, 2), j = sizeof(int);", "1 i:1 int i\n1 j:1 int j\n"},
           // None of these defines a symbol.
           Case{"extern int e; int f(int); typedef struct t t_t; struct u; MACRO(x); ; int "
                "g(void), h(void);",
                ""},
           Case{"typedef struct p { int x; } p_t;", "2 p:1 struct p\n"},
           // Braces, quotes and names where they mean nothing.
           Case{"/* { */ // {\n#define X {\\\n {\nchar c = '{'; char *s = \"}\\\"{\"; int last;",
                "1 c:4 char c\n1 s:4 char *s\n1 last:4 int last\n"},
           // Each branch follows what precedes it.
           Case{"#if A\nint f(int a) {\n#else\nint f(void) {\n#endif\n return 0; }\nint after;",
                "0 f:2 int f(int a)\n0 f:4 int f(void)\n1 after:7 int after\n"},
           Case{"#ifdef A\n#if B\nvoid g(void) {\n#elif C\n#endif\n#endif\nint x;",
                "0 g:3 void g(void)\n1 x:7 int x\n"},
           // Not C, or only a part of it.
           Case{"}}) ; int a;", "1 a:1 int a\n"},
           Case{"int a; char \"", "1 a:1 int a\n"},
           Case{"#", ""},
           Case{"/*", ""},
       }) {
    EXPECT_EQ(DeclarationsOf(each.source), each.found) << each.source;
  }
}

class CdbSymbols : public ::testing::Test {
 protected:
  void Add(const std::string& name, const std::string& source, const std::string& records,
           const std::string& further = "") {
    const std::size_t slash = name.rfind('/') + 1;
    disk.AddFile("/p/" + name + ".c", source);
    disk.AddFile("/p/out/" + name + ".adb", "M:" + name.substr(slash) + "\n");
    disk.AddFile("/p/out/" + name + ".d", "out/" + name + ".rel: " + name + ".c " + further + "\n");
    objects.push_back("/p/out/" + name + ".rel");
    cdb += "M:" + name.substr(slash) + "\n" + records;
  }

  std::string List(const std::string& places) {
    disk.AddFile("/p/out/app.cdb", cdb + places);
    const GlobalSymbols found = ReadCdbSymbols(disk, "/p/out/app.cdb", objects, "/p");
    EXPECT_EQ(found.problem, "");
    std::string lines;
    for (const GlobalSymbol& each : found.symbols) {
      lines += std::to_string(static_cast<int>(each.kind)) + ' ' + each.name + ' ' + each.file +
               ':' + std::to_string(each.line) + ' ' + each.definition + '\n';
    }
    return lines;
  }

  MemoryFileSystem disk;
  std::vector<std::string> objects;
  std::string cdb;
};

TEST_F(CdbSymbols, AreThoseOfTheProgramThatTheSourcesDefine) {
  disk.AddFile("/p/led.h",
               "struct point { int x; };\nextern char state;\n__sfr __at (0x90) LED;\n");
  Add("main", "#include \"led.h\"\nstatic char ticks;\nint (*call)(char);\nvoid main(void) {}\n",
      "F:G$main$0_0$0({2}DF,SV:S),C,0,0,0,0,0\n"
      "T:Fmain$point[({0}S:S$x$0_0$0({2}SI:S),Z,0,0)]\n"
      "T:Fmain$__00000001[({0}S:S$x$0_0$0({2}SI:S),Z,0,0)]\n"
      "S:Fmain$ticks$0_0$0({1}SC:U),E,0,0\n"
      "S:G$state$0_0$0({1}SC:U),E,0,0\n"
      "S:G$LED$0_0$0({1}SC:U),I,0,0\n"
      "S:G$P0$0_0$0({1}SC:U),I,0,0\n"
      "S:G$call$0_0$0({2}DC,DF,SI:S),E,0,0\n"
      "S:G$set$0_0$0({2}DF,SV:S),C,0,0\n"
      "S:Fmain$unused$0_0$0({1}SC:U),E,0,0\n"
      "S:Lmain.main$ticks$1_0$4({1}SC:U),E,0,0\n",
      "led.h");
  Add("io/led", "#include \"../led.h\"\nchar state = 2;\nstatic char ticks;\nvoid set(char n) {}\n",
      "F:G$set$0_0$0({2}DF,SV:S),Z,0,0,0,0,0\n"
      "T:Fled$point[({0}S:S$x$0_0$0({2}SI:S),Z,0,0)]\n"
      "S:G$state$0_0$0({1}SC:U),E,0,0\n"
      "S:Fled$ticks$0_0$0({1}SC:U),E,0,0\n",
      "\\\n led.h");
  EXPECT_EQ(List("L:Fmain$ticks$0_0$0:8\nL:G$call$0_0$0:9\nL:G$state$0_0$0:B\nL:G$LED$0_0$0:90\n"
                 "L:G$P0$0_0$0:80\nL:Fled$ticks$0_0$0:C\nL:Lmain.main$ticks$1_0$4:10\n"
                 "L:G$main$0$0:7A\nL:C$main.c$4$1_0$6:7A\nL:XG$main$0$0:80\nL:G$set$0$0:81\n"),
            "1 ticks /p/io/led.c:3 static char ticks\n"
            "1 ticks /p/main.c:2 static char ticks\n"
            "1 LED /p/led.h:3 __sfr __at (0x90) LED\n"
            "1 call /p/main.c:3 int (*call)(char)\n"
            "0 main /p/main.c:4 void main(void)\n"
            "0 set /p/io/led.c:4 void set(char n)\n"
            "1 state /p/io/led.c:2 char state\n"
            "2 point /p/led.h:1 struct point\n");
}

TEST_F(CdbSymbols, TheLineOfAFunctionDecidesBetweenDefinitions) {
  const std::string records = "F:Fmain$f$0_0$0({2}DF,SV:S),C,0,0,0,0,0\n";
  Add("a/main", "#if 0\nstatic void f(int a)\n#else\nstatic void f(void)\n#endif\n{}\n", records);
  Add("b/main", "\n\n\n\n\nstatic void f(char c) {}\n", records);
  const std::string place = "L:Fmain$f$0$0:7A\nL:C$main.c$";
  EXPECT_EQ(List(place + "4$1_0$6:7A\n"), "0 f /p/a/main.c:4 static void f(void)\n");
  EXPECT_EQ(List(place + "6$1_0$6:7A\n"), "0 f /p/b/main.c:6 static void f(char c)\n");
}

TEST_F(CdbSymbols, DamageAndMissingFilesLeaveWhatIsWhole) {
  Add("main", "void main(void) {}\nint x;\n",
      "F:G$main$0_0$0({2}DF,SV:S),C,0\nS:G$x\nS:$\nS:\nF\nT:\nL:G$x$0:\nL:C$\nL:C$main.c:1\nL:"
      "\n\x01\n");
  Add("gone", "int y;\n", "S:G$y$0_0$0({2}SI:S),E,0,0\n");
  disk.Erase("/p/gone.c");
  objects.push_back("/p/out/none.rel");
  EXPECT_EQ(List("L:G$main$0$0:1\nL:G$y$0_0$0:zz\nL:G$y$0_0$0:2\n"),
            "0 main /p/main.c:1 void main(void)\n");
  disk.FailOn("read", "/p/out/app.cdb", ErrorCode::Io);
  EXPECT_NE(ReadCdbSymbols(disk, "/p/out/app.cdb", objects, "/p").problem, "");
  EXPECT_EQ(ReadCdbSymbols(disk, "/p/out/none.cdb", objects, "/p").problem, "");
}

}  // namespace
}  // namespace tarn::tools
