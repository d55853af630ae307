#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "components/common/OptionValues.h"
#include "components/tools/ToolManager.h"
#include "platform/text/Text.h"

// The shipped definitions with the compilers that are installed here: what they really say and
// leave. A toolchain that is missing skips its tests.
namespace tarn::tools {
namespace {

class RealTools : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarn real-XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    const char* source = std::getenv("TARN_SOURCE_DIR");
    manager = new ToolManager(ToolWorld::Native());
    manager->InitTools((std::string(source ? source : ".") + "/share").c_str(), "", 0);
    ASSERT_EQ(manager->GetDefinitionErrors(), "");
    values.Put("Application", "General", "ApplicationDir", folder);
    values.Put("", "Compiler", "Debug", "Yes");
    values.Put("", "Compiler", "Warnings", "all");
  }
  void TearDown() override {
    if (manager != nullptr) manager->Release();
    std::filesystem::remove_all(folder);
  }

  void Write(const std::string& name, const std::string& text) {
    std::ofstream(folder + "/" + name) << text;
  }
  std::string Read(const std::string& name) const {
    std::ifstream file(folder + "/" + name);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool Exists(const std::string& name) const {
    return std::filesystem::exists(folder + "/" + name);
  }

  bool Run(const char* tool, const std::vector<std::string>& files, const std::string& output) {
    values.Put("", "Build", "OutputFile", output);
    std::string list;
    for (const std::string& file : files) list += ",\"" + folder + "/" + file + '"';
    const std::string options = values.ToText();
    const int result = manager->RunTool(tool, list.substr(1).c_str(), options.c_str(),
                                        (folder + "/m.xml").c_str());
    messages = ReplaceAll(Read("m.xml"), folder, "~");
    information = ReplaceAll(manager->TakeBuildInformation(), folder, "~");
    return result == 1;
  }
  // Each of these must stand in the messages.
  void ExpectMessages(std::initializer_list<const char*> parts) {
    for (const char* part : parts) {
      EXPECT_NE(messages.find(part), std::string::npos) << part << "\nis not in\n" << messages;
    }
  }
  bool IsMissing(const char* tool) { return !manager->MissingProgram(tool).empty(); }

  std::string folder;
  OptionValues values{"C"};
  ToolManager* manager = nullptr;
  std::string messages;
  std::string information;
};

constexpr const char* kWarned =
    "Icon=\"1\" ShowInReport=\"yes\" Contain=\"unused variable 'u' [-Wunused-variable]\"";

TEST_F(RealTools, AvrFirmwareIsCompiledLinkedAndMeasured) {
  if (IsMissing("avr-gcc.c")) GTEST_SKIP() << "avr-gcc is not installed";
  values.Put("", "Target", "Device", "atmega328p");
  values.Put("", "Target", "Clock", "16000000");
  values.Put("", "Compiler", "Optimize", "s");
  values.Put("", "Linker", "MapFile", "out/p.map");
  Write("a,b.c",
        "#include <avr/io.h>\n#include \"h #1.h\"\nint main(void) {\n  int u;\n"
        "  PORTB = F_CPU / 1000000UL + buffer[ONE];\n  return 0;\n}\n");
  Write("h #1.h", "#define ONE 1\nchar buffer[18];\n");
  Write("s.s", ".global other\nother: ret\n");
  ASSERT_TRUE(Run("avr-gcc.c", {"a,b.c"}, "out/dir/a.o")) << messages;
  ExpectMessages({kWarned, "File=\"~/a,b.c\" Line=\"4\"", "<link>err://~/a,b.c:4</link>"});
  EXPECT_NE(information.find("<F Header=\"~/out/dir/a.o\" Infos=\"\" Date=\"1"), std::string::npos);
  EXPECT_NE(information.find("\"><D Header=\"~/h #1.h\"/></F></I>"), std::string::npos)
      << information;
  ASSERT_TRUE(Run("avr-gcc.asm", {"s.s"}, "out/s.o")) << messages;
  ASSERT_TRUE(Run("avr-gcc.link", {"out/dir/a.o", "out/s.o"}, "out/p.elf")) << messages;
  EXPECT_TRUE(Exists("out/p.map") && Exists("out/p.hex"));
  EXPECT_NE(information.find("Infos=\"flash 1"), std::string::npos) << information;
  EXPECT_NE(information.find(" B, RAM 18 B\""), std::string::npos) << information;
}

TEST_F(RealTools, AvrErrorsOfAllThreeToolsLeadToTheirLines) {
  if (IsMissing("avr-gcc.c")) GTEST_SKIP() << "avr-gcc is not installed";
  values.Put("", "Target", "Device", "atmega328p");
  Write("bad.c", "#include \"bad.h\"\nint main(void) { return missing(); }\n");
  Write("bad.h", "int f(int a { return 1; }\n");
  EXPECT_FALSE(Run("avr-gcc.c", {"bad.c"}, "out/bad.o"));
  ExpectMessages(
      {"<message Description=\"In file included from ~/bad.c:1:0:\" File=\"~/bad.c\" "
       "Line=\"1\"><header>",
       "Icon=\"2\" ShowInReport=\"yes\" Contain=\"expected ';', ',' or ')' before '{' "
       "token\"",
       "<link>err://~/bad.h:1</link>"});
  EXPECT_EQ(information, "");
  Write("s.s", " nop\n foo r1\n");
  EXPECT_FALSE(Run("avr-gcc.asm", {"s.s"}, "out/s.o"));
  ExpectMessages({"Contain=\"unknown opcode `foo'\"", "File=\"~/s.s\" Line=\"2\""});
  Write("l.c", "int missing(void);\nint main(void) {\n  return missing();\n}\n");
  ASSERT_TRUE(Run("avr-gcc.c", {"l.c"}, "out/l.o")) << messages;
  EXPECT_FALSE(Run("avr-gcc.link", {"out/l.o"}, "out/l.elf"));
  ExpectMessages({"Contain=\"undefined reference to `missing'\"", "File=\"~/l.c\" Line=\"3\"",
                  "Contain=\"ld returned 1 exit status\""});
}

TEST_F(RealTools, SdccFirmwareIsCompiledLinkedAndMeasured) {
  if (IsMissing("sdcc-mcs51.c")) GTEST_SKIP() << "sdcc is not installed";
  // The blank in the folder's name would break sdcc, were names not relative to it.
  Write("a.c",
        "#include <8051.h>\n#include \"b.h\"\nint unused(int a) { return 1; }\n"
        "void main(void) { P1 = missing(3); }\n");
  Write("b.h", "extern int missing(int);\n");
  Write("m.asm", " .module m\n .globl _missing\n .area CSEG (CODE)\n_missing: ret\n");
  ASSERT_TRUE(Run("sdcc-mcs51.c", {"a.c"}, "out/a.rel")) << messages;
  ExpectMessages(
      {"Icon=\"1\"", "unreferenced function argument : 'a'", "File=\"~/a.c\" Line=\"3\""});
  EXPECT_NE(information.find("<F Header=\"~/out/a.rel\""), std::string::npos) << information;
  EXPECT_NE(information.find("\"><D Header=\"~/b.h\"/></F></I>"), std::string::npos) << information;
  ASSERT_TRUE(Run("sdcc-mcs51.asm", {"m.asm"}, "out/m.rel")) << messages;
  ASSERT_TRUE(Run("sdcc-mcs51.link", {"out/a.rel", "out/m.rel"}, "out/p.ihx")) << messages;
  EXPECT_EQ(Read("out/p.ihx").substr(0, 1), ":");
  EXPECT_NE(information.find("Infos=\"flash "), std::string::npos) << information;
  EXPECT_NE(information.find(" B, RAM "), std::string::npos) << information;
}

TEST_F(RealTools, SdccErrorsOfAllThreeToolsAreSeen) {
  if (IsMissing("sdcc-mcs51.c")) GTEST_SKIP() << "sdcc is not installed";
  Write("e.c", "void main(void) {\n  P1 = z;\n}\n");
  EXPECT_FALSE(Run("sdcc-mcs51.c", {"e.c"}, "out/e.rel"));
  ExpectMessages({"Contain=\"Undefined identifier 'z'\"", "<link>err://~/e.c:2</link>"});
  Write("s.asm", " .area CSEG (CODE)\n foo a\n");
  EXPECT_FALSE(Run("sdcc-mcs51.asm", {"s.asm"}, "out/s.rel"));
  ExpectMessages({"Icon=\"2\"", "File=\"~/s.asm\" Line=\"2\""});
  Write("l.c", "extern int missing(void);\nvoid main(void) { missing(); }\n");
  ASSERT_TRUE(Run("sdcc-mcs51.c", {"l.c"}, "out/l.rel")) << messages;
  EXPECT_FALSE(Run("sdcc-mcs51.link", {"out/l.rel"}, "out/l.ihx"));
  ExpectMessages({"Contain=\"Undefined Global '_missing' referenced by module 'l'\"",
                  "Contain=\"sdcc ended with exit code 1\""});
  // A name that sdcc's shell would take for a command is refused before it starts.
  EXPECT_FALSE(Run("sdcc-mcs51.c", {"x$(touch hacked).c"}, "out/x.rel"));
  ExpectMessages({"sdcc can't work with blanks or special characters: x$(touch hacked).c"});
  EXPECT_FALSE(Exists("hacked"));
}

TEST_F(RealTools, ProgramsOfThisMachineAreCompiledAndLinked) {
  if (IsMissing("host-gcc.cpp")) GTEST_SKIP() << "g++ is not installed";
  Write("a.cpp",
        "#include \"a.hpp\"\n#include <string>\nint main() {\n  int u;\n"
        "  return std::string(TEXT).empty();\n}\n");
  Write("a.hpp", "#define TEXT \"x\"\n");
  ASSERT_TRUE(Run("host-gcc.cpp", {"a.cpp"}, "out/a.o")) << messages;
  ExpectMessages({kWarned, "File=\"~/a.cpp\" Line=\"4\""});
  EXPECT_NE(information.find("\"><D Header=\"~/a.hpp\"/></F></I>"), std::string::npos)
      << information;
  ASSERT_TRUE(Run("host-gcc.link", {"out/a.o"}, "out/a")) << messages;
  EXPECT_NE(information.find("Infos=\"code "), std::string::npos) << information;
  EXPECT_FALSE(Run("host-gcc.link", {"out/none.o"}, "out/b"));
  ExpectMessages({"Icon=\"2\"", "none.o"});
}

}  // namespace
}  // namespace tarn::tools
