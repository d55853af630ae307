#include "components/tools/GlobalsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/tools/DebugSymbols.h"
#include "components/tools/ToolManager.h"
#include "components/values/OptionValues.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "support/MemoryFileSystem.h"
#include "support/TestEnvironment.h"
#include "tests/components/tools/FakeLauncher.h"
#include "xml/XmlNode.h"

// Symbol lists of programs built by the compiler installed on this system with the shipped
// definitions.
namespace tarn::tools {
namespace {

using tarn::testing::MemoryFileSystem;
using tarn::testing::ReadBytes;
using tarn::testing::ScratchFolder;
using tarn::testing::SourcePath;
using testing::ToolManagerFixture;

class GlobalsFile : public ::testing::Test {
 protected:
  GlobalsFile() {
    manager->InitTools(SourcePath("share").c_str(), "", 0);
    values.Put("Application", "General", "ApplicationDir", folder.Path() + "/");
    values.Put("Application", "General", "ApplicationName", "app.v2");
    values.Put("", "Compiler", "Debug", "Yes");
    values.SetConfig("Debug");
  }
  ~GlobalsFile() override { manager->Release(); }

  void SetUp() override {
    if (!manager->MissingProgram("host-gcc.link").empty()) GTEST_SKIP() << "there is no compiler";
  }

  void Run(const char* tool, const std::string& input, const std::string& output) {
    values.Put("", "Build", "OutputFile", output);
    const int done = manager->RunTool(tool, ('"' + folder / input + '"').c_str(),
                                      values.ToText().c_str(), (folder / "m.xml").c_str());
    ASSERT_EQ(done, 1) << ReadBytes(folder / "m.xml");
  }
  // Compiles and links a source.
  void Build(const std::string& name, const char* text) {
    folder.Write(name, text);
    Run(ExtensionOf(name) == ".c" ? "host-gcc.c" : "host-gcc.cpp", name, "a.o");
    Run("host-gcc.link", "a.o", "app");
  }

  // Returns "icon name:line definition" for each symbol of that file.
  std::string ListOf(const std::string& source) {
    CXmlNode root;
    root.Load(ReadBytes(folder / "app.v2-Globals.Debug.xml"), g_xmlParseInfo);
    EXPECT_NE(root.GetAttr("dwarf"), nullptr);
    std::string lines;
    for (const CXmlNode* symbol : root.GetChildren()) {
      const auto value = [&](const char* name) { return OrEmpty(symbol->GetAttrValue(name)); };
      if (value("DeclFile") != folder / source) continue;
      lines += value("Icon") + ' ' + value("Header") + ':' + value("DeclLine") + ' ' +
               value("Desc") + '\n';
    }
    return lines;
  }

  const ScratchFolder folder{"tarn globals-"};
  OptionValues values{"Application"};
  ToolManager* const manager = new ToolManager(ToolEnvironment::Native());
};

TEST_F(GlobalsFile, SymbolsOfAProgramInCWithPlaceAndDefinition) {
  Build("a.c",
        "#include <stdint.h>\n"
        "struct queue { uint8_t in; char data[4]; struct queue *next; unsigned full : 1; };\n"
        "enum mode { OFF, ON = 4 };\n"
        "typedef struct { enum mode mode; union { int whole; float part; } value; } state_t;\n"
        "typedef int (*handler_t)(const char *, ...);\n"
        "extern int declared_only;\n"
        "static volatile uint8_t ticks;\n"
        "struct queue *volatile first = 0;\n"
        "handler_t handlers[2][3];\n"
        "int (*(*odd)(int))[3];\n"
        "state_t state;\n"
        "int never_used(void) { return 1; }\n"
        "void declared(void);\n"
        "static uint8_t put(char c) { static int inner; return (uint8_t)(c + ticks + inner++); }\n"
        "int main(int argc, char **argv) {\n"
        "  handlers[0][0] = 0; odd = 0; state.mode = OFF;\n"
        "  return put(argv[0][0]) + (first ? argc : 0);\n}\n");
  EXPECT_EQ(ListOf("a.c"),
            "1 first:8 struct queue *volatile first\n"
            "2 handler_t:5 typedef int (*handler_t)(const char *, ...)\n"
            "1 handlers:9 handler_t handlers[2][3]\n"
            "0 main:15 int main(int argc, char **argv)\n"
            "2 mode:3 enum mode { OFF, ON }\n"
            "1 odd:10 int (*(*odd)(int))[3]\n"
            "0 put:14 static uint8_t put(char c)\n"
            "2 queue:2 struct queue { uint8_t in; char data[4]; struct queue *next; "
            "unsigned int full : 1; }\n"
            "1 state:11 state_t state\n"
            "2 state_t:4 typedef struct { enum mode mode; union { int whole; float part; } value; "
            "} state_t\n"
            "1 ticks:7 static volatile uint8_t ticks\n");
}

TEST_F(GlobalsFile, SymbolsOfAProgramInCppHaveTheirScope) {
  Build("a.cpp",
        "namespace n {\n"
        "struct P { int x; static int made; P(int y); ~P(); bool operator<(const P &o) const; };\n"
        "int P::made;\n"
        "P::P(int y) : x(y) { ++made; }\n"
        "P::~P() { --made; }\n"
        "bool P::operator<(const P &o) const { return x < o.x; }\n"
        "int operator|(P &&a, const P &b) { return a.x | b.x; }\n"
        "}\n"
        "int operator\"\"_k(unsigned long long v) { return static_cast<int>(v); }\n"
        "int main() { return (n::P(1) < n::P(2)) + (n::P(1) | n::P(2)) + 3_k; }\n");
  EXPECT_EQ(ListOf("a.cpp"),
            "0 main:10 int main()\n"
            "2 n::P:2 struct n::P { int x; }\n"
            "0 n::P::P:4 n::P::P(int y)\n"
            "1 n::P::made:3 int n::P::made\n"
            "0 n::P::operator<:6 bool n::P::operator<(const P &o)\n"
            "0 n::P::~P:5 n::P::~P()\n"
            "0 n::operator|:7 int n::operator|(P &&a, const P &b)\n"
            "0 operator\"\"_k:9 int operator\"\"_k(long long unsigned int v)\n");
}

// Firmware starts at address 0, which is also the apparent address of discarded functions.
TEST_F(GlobalsFile, AFunctionAtAddressZeroIsNoneThatWasLeftOut) {
  values.Put("", "Linker", "Extra", "-nostdlib -static -Wl,-e,main,-Ttext=0");
  Build("a.c", "int unused(void) { return 1; }\nint main(void) { return 0; }\n");
  EXPECT_EQ(ListOf("a.c"), "0 main:2 int main(void)\n");
}

// One that is always inlined would otherwise take the place of what is at address 0.
TEST_F(GlobalsFile, AFunctionWithoutCodeHasNoPosition) {
  values.Put("", "Linker", "Extra", "-nostdlib -static -Wl,-e,main,-Ttext=0");
  Build("a.c",
        "static inline __attribute__((always_inline)) int twice(int n) { return n + n; }\n"
        "int main(int n) { return twice(n); }\n");
  EXPECT_EQ(SymbolPositionsText(FileSystem::Native(), folder / "app", folder.Path()),
            "0 2 " + (folder / "a.c") + "\n");
}

TEST_F(GlobalsFile, IsWrittenOnlyWhenItChangesAndGoneWithoutDebugInformation) {
  const char* const source = "int shown;\nint main(void) { return shown; }\n";
  Build("a.c", source);
  const std::string path = folder / "app.v2-Globals.Debug.xml";
  const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(path, longAgo);
  Run("host-gcc.link", "a.o", "app");
  EXPECT_EQ(std::filesystem::last_write_time(path), longAgo);
  values.Put("", "Compiler", "Debug", "No");
  Build("a.c", source);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(GlobalsFile, DamagedDebugInformationIsToldAndGivesWhatIsWhole) {
  Build("a.c", "int shown;\nint main(void) { return shown; }\n");
  const std::string program = ReadBytes(folder / "app");
  std::string intact = program;
  const std::size_t whole = ReadDebugSymbols(intact, "").symbols.size();
  ASSERT_GE(whole, 2u);
  std::size_t reported = 0;
  std::size_t partial = 0;
  std::uint32_t state = 1;
  const auto random = [&state] { return (state = state * 1664525u + 1013904223u) >> 8; };
  for (int round = 0; round < 400; ++round) {
    std::string damaged = program;
    for (int i = 0; i < 40; ++i) {
      damaged[random() % damaged.size()] = static_cast<char>(random());
    }
    if (round % 8 == 0) damaged.resize(random() % damaged.size());
    MemoryFileSystem disk;
    disk.AddFile("/app", damaged);
    disk.AddFile("/list.xml", "of an earlier program");
    const std::string note =
        UpdateGlobalsFile(disk, "/list.xml", ReadProgramSymbols(disk, "/app", "/")).text;
    const std::string list = disk.BytesOf("/list.xml").value_or("<Globals");
    ASSERT_TRUE(list.starts_with("<Globals")) << "round " << round;
    if (!note.empty()) ++reported;
    if (!note.empty() && disk.BytesOf("/list.xml")) ++partial;
  }
  EXPECT_GT(reported, 0u);
  EXPECT_GT(partial, 0u);
}

TEST_F(GlobalsFile, AListThatCannotBeWrittenIsToldAndNoFailure) {
  Build("a.c", "int main(void) { return 0; }\n");
  ToolManagerFixture tools(R"(<T><Tool Name="link" Output="app"><Step Program="ld"/>)"
                           R"(<Globals Format="dwarf" File="lists/g.xml"/></Tool></T>)");
  tools.disk.FailOn("write", "/p/lists/g.xml", ErrorCode::NoSpace);
  const std::string program = ReadBytes(folder / "app");
  tools.launcher.Queue({{}, {}, tools.Makes("/p/app", program)});
  EXPECT_TRUE(tools.Run("link", "\"/p/a.o\""));
  EXPECT_THAT(tools.Messages(),
              ::testing::HasSubstr("Description=\"the list of globals can't be written: "
                                   "/p/lists/g.xml: "));
  EXPECT_THAT(tools.manager->TakeBuildInformation(), ::testing::HasSubstr("Header=\"/p/app\""));
}

}  // namespace
}  // namespace tarn::tools
