#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/tools/ToolManager.h"
#include "components/values/OptionValues.h"
#include "platform/text/Text.h"
#include "support/TestEnvironment.h"

// The shipped definitions with the compilers installed on this system: their real output and files.
// Tests of a missing toolchain are skipped.
namespace tarn::tools {
namespace {

class RealTools : public ::testing::Test {
 protected:
  RealTools() {
    manager->InitTools(tarn::testing::SourcePath("share").c_str(), "", 0);
    EXPECT_EQ(manager->GetDefinitionErrors(), "");
    values.Put("Application", "General", "ApplicationDir", folder.Path() + "/");
    values.Put("Application", "General", "ApplicationName", "app");
    values.Put("", "Target", "Device", "atmega328p");
    values.Put("", "Compiler", "Debug", "Yes");
    values.Put("", "Compiler", "Warnings", "all");
  }
  ~RealTools() override { manager->Release(); }

  bool Exists(const std::string& name) const { return std::filesystem::exists(folder / name); }

  bool Run(const char* tool, const std::vector<std::string>& files, const std::string& output) {
    values.Put("", "Build", "OutputFile", output);
    std::string list;
    for (const std::string& file : files) list += ",\"" + folder / file + '"';
    const std::string options = values.ToText();
    const int result =
        manager->RunTool(tool, list.substr(1).c_str(), options.c_str(), (folder / "m.xml").c_str());
    messages = ReplaceAll(tarn::testing::ReadBytes(folder / "m.xml"), folder.Path(), "~");
    information = ReplaceAll(manager->TakeBuildInformation(), folder.Path(), "~");
    return result == 1;
  }
  // Each of these must be in the messages or in the record.
  void Expect(std::initializer_list<const char*> parts) {
    for (const char* part : parts) EXPECT_THAT(messages + information, ::testing::HasSubstr(part));
  }
  bool IsMissing(const char* tool) { return !manager->MissingProgram(tool).empty(); }

  // The space in its name would break sdcc if paths were not relative to the folder.
  const tarn::testing::ScratchFolder folder{"tarn real-"};
  OptionValues values{"C"};
  ToolManager* const manager = new ToolManager(ToolEnvironment::Native());
  std::string messages;
  std::string information;
};

TEST_F(RealTools, AvrFirmwareIsCompiledLinkedAndMeasured) {
  if (IsMissing("avr-gcc.c")) GTEST_SKIP() << "avr-gcc is not installed";
  values.Put("", "Target", "Clock", "16000000");
  values.Put("", "Compiler", "Optimize", "s");
  values.Put("", "Linker", "MapFile", "out/p.map");
  folder.Write("a,b.c",
               "#include <avr/io.h>\n#include \"h #1.h\"\nint main(void) {\n  int u;\n"
               "  PORTB = F_CPU / 1000000UL + buffer[ONE];\n  return 0;\n}\n");
  folder.Write("h #1.h", "#define ONE 1\nchar buffer[18];\n");
  folder.Write("s.s", ".global other\n.include \"i.inc\"\nother: ret\n");
  folder.Write("i.inc", "l: .incbin \"l.bin\"\n");
  folder.Write("l.bin", "12");
  ASSERT_TRUE(Run("avr-gcc.c", {"a,b.c"}, "out/dir/a.o")) << messages;
  Expect(
      {R"(Icon="1" ShowInReport="yes" Contain="unused variable &#8216;u&#8217; [-Wunused-variable]")",
       "File=\"~/a,b.c\" Line=\"4\"", "<link>err://~/a,b.c:4</link>"});
  Expect(
      {"<F Header=\"~/out/dir/a.o\" Infos=\"\" Date=\"1", "\"><D Header=\"~/h #1.h\"/></F></I>"});
  ASSERT_TRUE(Run("avr-gcc.asm", {"s.s"}, "out/s.o")) << messages;
  Expect({"<D Header=\"~/i.inc\"/>", "<D Header=\"~/l.bin\"/>"});
  ASSERT_TRUE(Run("avr-gcc.link", {"out/dir/a.o", "out/s.o"}, "out/p.elf")) << messages;
  EXPECT_TRUE(Exists("out/p.map") && Exists("out/p.hex"));
  Expect({"Infos=\"flash 1", " B, RAM 18 B\""});
}

TEST_F(RealTools, AvrErrorsOfAllThreeToolsLeadToTheirLines) {
  if (IsMissing("avr-gcc.c")) GTEST_SKIP() << "avr-gcc is not installed";
  folder.Write("bad.c", "#include \"bad.h\"\nint main(void) { return missing(); }\n");
  folder.Write("bad.h", "int f(int a { return 1; }\n");
  EXPECT_FALSE(Run("avr-gcc.c", {"bad.c"}, "out/bad.o"));
  Expect(
      {"<message Description=\"In file included from bad.c:1:0:\" File=\"~/bad.c\" "
       "Line=\"1\"><header>",
       R"(Icon="2" ShowInReport="yes" Contain="expected &#8216;;&#8217;, &#8216;,&#8217; or &#8216;)&#8217; before &#8216;{&#8217; token")",
       "<link>err://~/bad.h:1</link>"});
  EXPECT_EQ(information, "");
  folder.Write("s.s", " nop\n foo r1\n");
  EXPECT_FALSE(Run("avr-gcc.asm", {"s.s"}, "out/s.o"));
  Expect({"Contain=\"unknown opcode `foo'\"", "File=\"~/s.s\" Line=\"2\""});
  folder.Write("l.c", "int missing(void);\nint main(void) {\n  return missing();\n}\n");
  ASSERT_TRUE(Run("avr-gcc.c", {"l.c"}, "out/l.o")) << messages;
  EXPECT_FALSE(Run("avr-gcc.link", {"out/l.o"}, "out/l.elf"));
  Expect({"Contain=\"undefined reference to `missing'\"", "File=\"~/l.c\" Line=\"3\"",
          "Contain=\"ld returned 1 exit status\""});
}

TEST_F(RealTools, SdccFirmwareIsCompiledLinkedAndMeasured) {
  if (IsMissing("sdcc-mcs51.c")) GTEST_SKIP() << "sdcc is not installed";
  folder.Write("a.c",
               "#include <8051.h>\n#include \"b.h\"\nint unused(int a) { return 1; }\n"
               "void main(void) { P1 = missing(3); }\n");
  folder.Write("b.h", "extern int missing(int);\n");
  folder.Write("i.inc", " .include /j.inc/\n");
  folder.Write("j.inc", "");
  folder.Write(
      "m.asm",
      " .include \"i.inc\"\n .module m\n .globl _missing\n .area CSEG (CODE)\n_missing: ret\n");
  ASSERT_TRUE(Run("sdcc-mcs51.c", {"a.c"}, "out/a.rel")) << messages;
  Expect({"Icon=\"1\"", "unreferenced function argument : 'a'", "File=\"~/a.c\" Line=\"3\""});
  Expect({"<F Header=\"~/out/a.rel\"", "\"><D Header=\"~/b.h\"/></F></I>"});
  ASSERT_TRUE(Run("sdcc-mcs51.asm", {"m.asm"}, "out/m.rel")) << messages;
  Expect({"<D Header=\"~/i.inc\"/><D Header=\"~/j.inc\"/></F></I>"});
  ASSERT_TRUE(Run("sdcc-mcs51.link", {"out/a.rel", "out/m.rel"}, "out/p.ihx")) << messages;
  EXPECT_EQ(tarn::testing::ReadBytes(folder / "out/p.ihx").substr(0, 1), ":");
  Expect({"Infos=\"flash ", " B, RAM "});
}

TEST_F(RealTools, SdccForTheStm8IsMeasuredByItsAreas) {
  if (IsMissing("sdcc-stm8.c")) GTEST_SKIP() << "sdcc is not installed";
  folder.Write("a.c",
               "#include \"b.h\"\nint set = 5;\nchar clear[7];\n"
               "void main(void) { set = clear[1] + more(); }\n");
  folder.Write("b.h", "extern int more(void);\n");
  folder.Write("m.asm", " .module m\n .globl _more\n .area CODE\n_more: ret\n");
  ASSERT_TRUE(Run("sdcc-stm8.c", {"a.c"}, "out/a.rel")) << messages;
  Expect({"<F Header=\"~/out/a.rel\"", "\"><D Header=\"~/b.h\"/></F></I>"});
  ASSERT_TRUE(Run("sdcc-stm8.asm", {"m.asm"}, "out/m.rel")) << messages;
  ASSERT_TRUE(Run("sdcc-stm8.link", {"out/a.rel", "out/m.rel"}, "out/p.ihx")) << messages;
  EXPECT_EQ(tarn::testing::ReadBytes(folder / "out/p.ihx").substr(0, 1), ":");
  Expect({"Infos=\"flash ", " B, RAM 9 B\""});
}

TEST_F(RealTools, SdccListsTheGlobalsOfEachFamily) {
  values.SetConfig("Standard");
  values.Put("", "General", "ApplicationDir", folder.Path() + "/");
  values.Put("", "General", "ApplicationName", "app");
  folder.Write(
      "a.c",
      "#include \"b.h\"\nstatic int (*handler)(char);\nstruct pair both;\n"
      "static void set(int by) { both.n += by; handler = 0; }\nvoid main(void) { set(3); }\n");
  folder.Write("b.h", "struct pair { int n; };\nextern struct pair both;\n");
  for (const char* family : {"mcs51", "stm8", "z80", "sm83", "hc08", "pdk14"}) {
    const std::string tool = std::string("sdcc-") + family;
    if (IsMissing((tool + ".c").c_str())) GTEST_SKIP() << "sdcc is not installed";
    values.Put("", "Compiler", "Debug", "Yes");
    ASSERT_TRUE(Run((tool + ".c").c_str(), {"a.c"}, "out/a.rel")) << messages;
    ASSERT_TRUE(Run((tool + ".link").c_str(), {"out/a.rel"}, "out/p.ihx")) << messages;
    const std::string list = tarn::testing::ReadBytes(folder / "app-Globals.Standard.xml");
    for (const char* part : {"Header=\"both\" Desc=\"struct pair both\"", "Header=\"handler\"",
                             "Header=\"main\"", "Header=\"pair\" Desc=\"struct pair\"",
                             "Desc=\"static void set(int by)\"", "a.c\" DeclLine=\"4\""}) {
      EXPECT_THAT(list, ::testing::HasSubstr(part)) << family;
    }
    // The file of the earlier link is not that of a program without debug information.
    values.Put("", "Compiler", "Debug", "No");
    ASSERT_TRUE(Run((tool + ".link").c_str(), {"out/a.rel"}, "out/p.ihx")) << messages;
    EXPECT_FALSE(Exists("app-Globals.Standard.xml")) << family;
  }
}

TEST_F(RealTools, SdccErrorsOfAllThreeToolsAreSeen) {
  if (IsMissing("sdcc-mcs51.c")) GTEST_SKIP() << "sdcc is not installed";
  folder.Write("e.c", "void main(void) {\n  P1 = z;\n}\n");
  EXPECT_FALSE(Run("sdcc-mcs51.c", {"e.c"}, "out/e.rel"));
  Expect({"Contain=\"Undefined identifier 'z'\"", "<link>err://~/e.c:2</link>"});
  folder.Write("s.asm", " .area CSEG (CODE)\n foo a\n");
  EXPECT_FALSE(Run("sdcc-mcs51.asm", {"s.asm"}, "out/s.rel"));
  Expect({"Icon=\"2\"", "File=\"~/s.asm\" Line=\"2\""});
  folder.Write("l.c", "extern int missing(void);\nvoid main(void) { missing(); }\n");
  ASSERT_TRUE(Run("sdcc-mcs51.c", {"l.c"}, "out/l.rel")) << messages;
  EXPECT_FALSE(Run("sdcc-mcs51.link", {"out/l.rel"}, "out/l.ihx"));
  Expect({"Contain=\"Undefined Global '_missing' referenced by module 'l'\"",
          "Contain=\"sdcc ended with exit code 1\""});
  // A name that sdcc's shell would take for a command is rejected before the tool starts.
  EXPECT_FALSE(Run("sdcc-mcs51.c", {"x$(touch hacked).c"}, "out/x.rel"));
  Expect({"sdcc can't handle spaces or special characters: x$(touch hacked).c"});
  EXPECT_FALSE(Exists("hacked"));
}

}  // namespace
}  // namespace tarn::tools
