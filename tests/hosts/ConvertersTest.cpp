// The parts of the converters that read foreign text.

#include <gtest/gtest.h>

#include "hosts/core/PathPattern.h"
#include "hosts/core/import/CompilerCommand.h"
#include "hosts/core/import/Converters.h"
#include "hosts/core/import/IniFile.h"

namespace tarn::host {
namespace {

std::string Joined(const std::vector<std::string>& list) {
  std::string text;
  for (const std::string& each : list) text += (text.empty() ? "" : "|") + each;
  return text;
}

TEST(Converters, ACommandLineIsTakenApart) {
  const struct {
    const char *line, *toolchain, *defines, *includes, *further;
    const char *optimize, *warnings;
  } rows[] = {
      {"gcc -c -O2 -Wall -DA=1 -D B -Iinc -I /x a.c -o a.o", "host-gcc", "A=1|B", "/p/inc|/x", "",
       "2", "all"},
      {"ccache /opt/bin/avr-gcc-12 -mmcu=atmega8 -DF_CPU=8000000UL -Os -W -Wall -MMD -MF x.d -c "
       "a.c",
       "avr-gcc", "", "", "-W", "s", "all"},
      {"arm-none-eabi-g++ -mthumb -mcpu=cortex-m4 -Og -include pre.h -c a.cc", "arm-gcc", "", "",
       "-Og|-include|/p/pre.h", "0", "default"},
      {"clang --target=riscv32 -w -c a.c", "riscv-clang", "", "", "", "0", "none"},
      {"sdcc -mstm8 --std-c99 -c a.c", "sdcc-stm8", "", "", "", "0", "default"},
      {"gcc -DA -UA -DB=1 -UC -DC -DB=2 -c a.c", "host-gcc", "C|B=2", "", "-UA", "0", "default"},
      {"gcc '-DTEXT=\"a b\"' -DLIST=1;2 -isystem/usr/x -c a.c", "host-gcc", "TEXT=\"a b\"", "",
       "-DLIST=1;2|-isystem/usr/x", "0", "default"},
      {"/bin/bash ../libtool --tag=CC --mode=compile gcc -O1 -c a.c -o a.lo", "host-gcc", "", "",
       "", "1", "default"},
      {"icc -c a.c", "", "", "", "", "0", "default"},
      {"arm-none-eabi-as -mthumb -mcpu=cortex-m3 -g --defsym A=1 -Iinc -D a.s -o a.o", "arm-gcc",
       "", "/p/inc", "-Wa,--defsym,A=1", "0", "default"},
      {"arm-none-eabi-ld.bfd -T a.ld -Map=x --gc-sections -e main -Map y -Lx -lc a.o", "arm-gcc",
       "", "", "-nostdlib|-Wl,-e,main", "0", "default"},
      {"arm-none-eabi-gcc --specs=nano.specs -specs=nosys.specs -Wl,-T,a.ld a.c", "arm-gcc", "", "",
       "", "0", "default"},
      {"gcc -specs=own.specs -Wl,-Ttext=4 a.c", "host-gcc", "", "", "-specs=own.specs|-Wl,-Ttext=4",
       "0", "default"},
  };
  for (const auto& row : rows) {
    const CompilerCommand command = ParseCompilerCommand(SplitShellWords(row.line), "/p");
    std::vector<std::string> further;
    for (const FurtherArgument& each : command.further) further.push_back(each.text + each.path);
    EXPECT_EQ(command.toolchain, row.toolchain) << row.line;
    EXPECT_EQ(Joined(command.defines), row.defines) << row.line;
    EXPECT_EQ(Joined(command.includes), row.includes) << row.line;
    EXPECT_EQ(Joined(further), row.further) << row.line;
    EXPECT_EQ(command.optimize, row.optimize) << row.line;
    EXPECT_EQ(command.warnings, row.warnings) << row.line;
    EXPECT_EQ(command.inputs.size(), 1U) << row.line;
  }
}

TEST(Converters, WordsOfAShellAreSplitAndWrittenBack) {
  const struct {
    const char *line, *words, *written;
  } rows[] = {
      {"a  'b c' d\\ e", "a|b c|d e", "a \"b c\" \"d e\""},
      {R"(-DX=\"1\" "-DY=\"z\"" '')", R"(-DX="1"|-DY="z"|)", R"("-DX=\"1\"" "-DY=\"z\"" "")"},
      {R"('a\b' "c\d")", R"(a\b|c\d)", R"("a\\b" "c\\d")"},
      {"'open", "open", "open"},
  };
  for (const auto& row : rows) {
    const auto words = SplitShellWords(row.line);
    EXPECT_EQ(Joined(words), row.words);
    EXPECT_EQ(WordsValue(words), row.written);
  }
}

TEST(Converters, ASketchGetsPrototypesBeforeItsFirstFunction) {
  const struct {
    const char *name, *sketch, *source;
  } rows[] = {
      {"types before",
       "struct P { int x; };\nvoid setup() { f({1}); }\nint f(P p) { return p.x; }\n",
       "struct P { int x; };\nvoid setup();\nint f(P p);\n\nvoid setup() { f({1}); }\nint f(P p) { "
       "return p.x; }\n"},
      {"defaults and comments", "int a = 1; // f() {\nint f(int b = g(1), char c = ',') {}\n",
       "int a = 1; // f() {\nint f(int b , char c );\n\nint f(int b = g(1), char c = ',') {}\n"},
      {"conditions", "#ifdef A\nvoid a() {}\n#else\nvoid b() {}\n#endif\n",
       "#ifdef A\nvoid a();\n#endif\n#ifdef A\n#else\nvoid b();\n#endif\n\n#ifdef A\nvoid a() "
       "{}\n#else\nvoid b() {}\n#endif\n"},
      {"no prototypes",
       "template <class T> T f(T t) { return t; }\nISR(X) { }\nclass C { void m() { } };\nvoid "
       "C::n() { }\nint list[] = {1, 2};\nnamespace n { void o() {} }\n",
       "template <class T> T f(T t) { return t; }\nISR(X) { }\nclass C { void m() { } };\nvoid "
       "C::n() { }\nint list[] = {1, 2};\nnamespace n { void o() {} }\n"},
      {"a literal", "char* t = R\"(void x() {)\";\nchar c = '{';\n",
       "char* t = R\"(void x() {)\";\nchar c = '{';\n"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SketchToCpp(row.sketch), std::string("#include <Arduino.h>\n\n") + row.source)
        << row.name;
  }
}

TEST(Converters, PatternsOfPaths) {
  const struct {
    const char *path, *pattern;
    bool fits;
  } rows[] = {
      {"a/test/b.c", "test", true},
      {"a/test/b.c", "/test", false},
      {"a/test/b.c", "a/*/b.c", true},
      {"a/test/b.c", "a/*", true},
      {"a/b/c.c", "a/c.c", false},
      {"a/b/c.c", "a/**/c.c", true},
      {"a/c.c", "a/**/c.c", true},
      {"x.o", "*.o", true},
      {"x.oo", "*.o", false},
      {"build/x", "build/", true},
      {"ab", "a?", true},
      {"a", "", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FitsPathPattern(row.path, row.pattern), row.fits) << row.path << " " << row.pattern;
  }
}

TEST(Converters, AnIniFileHasReferencesAndBases) {
  const IniFile ini(
      "[env]\nflags = -DALL ; all of them\n[base]\nflags = -DBASE\n  -DMORE\nloop = ${base.loop}\n"
      "[env:a]\nextends = base\nown = x ${base.flags} ${no.thing} ${base.gone}\n[env:b]\nodd\n");
  EXPECT_EQ(ini.Get("env:a", "flags"), "-DBASE\n-DMORE");
  EXPECT_EQ(ini.Get("env:b", "flags"), "-DALL");
  EXPECT_EQ(ini.Get("env:a", "own"), "x -DBASE\n-DMORE ${no.thing} ${base.gone}");
  EXPECT_EQ(Joined(ini.GetKeys("env:a")), "extends|own|flags|loop");
  EXPECT_EQ(Joined(ini.GetFaults()), "11: odd");
  EXPECT_LT(ini.Get("base", "loop").size(), 20U);
  // Each base has all of them again.
  const IniFile endless("[a]\nextends = a,a,a,a,a,a,a,a\n");
  EXPECT_EQ(endless.Get("a", "none"), "");
}

// 64 conditions for each of many functions.
TEST(Converters, AHugeSketchGetsNoPrototypesWithoutBound) {
  std::string sketch;
  for (int i = 0; i < 64; ++i) sketch += "#if 1" + std::string(20000, '0') + "\n";
  for (int i = 0; i < 2000; ++i) sketch += "a f" + std::to_string(i) + "(){}\n";
  EXPECT_LT(SketchToCpp(sketch).size(), 20U << 20);
}

}  // namespace
}  // namespace tarn::host
