// Import of projects of other build systems, from their files to the built program.

#include <gtest/gtest.h>

#include "hosts/CliProject.h"
#include "platform/process/Process.h"

namespace tarn::host {
namespace {

// A folder "other" with the sources of a foreign project: a program of two files.
struct ForeignProject : CliProject {
  ForeignProject() {
    for (const char* each : {"other/src/part", "other/inc", "other/out", "other/test"}) {
      std::filesystem::create_directories(PathOf(each));
    }
    Write("other/src/main.c",
          "#include \"part.h\"\n#include <stdio.h>\n"
          "int main(void) { printf(\"%s %d\", NAME, part()); return 0; }\n");
    Write("other/src/part/part.c",
          "#include \"part.h\"\nint part(void) { return LEVEL; }\n"
          "#ifdef MAKE_TABLE\nint main(argc, argv)\n  int argc; char **argv;\n{ return 1; }\n"
          "#endif\n");
    Write("other/inc/part.h", "int part(void);\n");
    Write("other/test/broken.c", "#error not part of it\n");
  }
  // Imports, builds and runs the program.
  std::string Result(std::vector<std::string> arguments, const std::string& program,
                     const std::vector<std::string>& more = {}) {
    arguments.insert(arguments.begin(), "import");
    const Answer made = Run(arguments);
    EXPECT_EQ(made.code, 0) << made.err;
    remarks = made.err;
    std::vector<std::string> build = {"build", "other"};
    build.insert(build.end(), more.begin(), more.end());
    const Answer built = Run(build);
    EXPECT_EQ(built.code, 0) << built.out << built.err;
    return RunProgram(PathOf("other/build/" + program), {}).out;
  }
  std::string remarks;
};

constexpr const char* kDatabase = R"([
 {"directory": "@/other/out", "file": "../src/main.c",
  "command": "gcc -O1 -Wall -I../inc -DLEVEL=3 -DNAME='\"A \\$B;C\"' -std=gnu99 -c ../src/main.c -o main.o"},
 {"directory": "@/other/out", "file": "@/other/src/part/part.c",
  "arguments": ["gcc", "-O3", "-Wall", "-I../inc", "-DLEVEL=3", "-fno-common", "-c", "x", "-o", "p.o"]},
 {"directory": 1}, 2])";

TEST(CliForeign, ACompilationDatabaseIsImportedAndBuilds) {
  ForeignProject project;
  std::string text = kDatabase;
  for (std::size_t at; (at = text.find('@')) != std::string::npos;) {
    text.replace(at, 1, project.PathOf("."));
  }
  project.Write("other/out/compile_commands.json", text);
  EXPECT_EQ(project.Result({"other/out/compile_commands.json", "--to", "other"}, "Standard/other"),
            "A $B;C 3");
  EXPECT_TRUE(Has(project.remarks, "2 entries without a file")) << project.remarks;
  const struct {
    const char *option, *node, *value;
  } rows[] = {
      {"Application.Target.Toolchain", "", "host-gcc"},
      {"Application.Directories.Include", "", "inc"},
      {"Application.Compiler.Defines", "", "LEVEL=3"},
      {"Compiler.Optimize", "main.c", "1"},
      {"Compiler.Standard", "main.c", "gnu99"},
      {"Compiler.Optimize", "part.c", "3"},
      {"Compiler.Extra", "part.c", "-fno-common"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> words = {"options", "get", row.option, "other"};
    if (*row.node != 0) words.insert(words.end(), {"-n", row.node});
    EXPECT_EQ(project.Out(words), std::string(row.value) + "\n") << row.option << row.node;
  }
  // A save writes the same bytes.
  const std::string made = project.Read("other/other.tapp") + project.Read("other/other.tprj");
  project.Write("save.lua", "tarn.ProjectSave()");
  project.Out({"run", "save.lua", "other"});
  EXPECT_EQ(project.Read("other/other.tapp") + project.Read("other/other.tprj"), made);
}

// The folder of an entry may be anything.
TEST(CliForeign, SourcesThatDoNotExistDoNotChooseTheFolder) {
  ForeignProject project;
  std::string entries = R"([{"file": "src/main.c", "command": "gcc -c src/main.c"})";
  for (int i = 0; i < 6; ++i) {
    const std::string name = std::to_string(i) + ".c";
    entries += ", {\"directory\": \"" + project.PathOf("gone") + "\", \"file\": \"" + name +
               "\", \"command\": \"gcc -c " + name + "\"}";
    project.Write("other/compile_commands.json", entries + "]");
    const auto made = project.Run({"import", "other", "--yes"});
    EXPECT_TRUE(Has(made.err, i < 5 ? "gone/0.c was imported, but the file does not exist"
                                    : "6 files were imported, but do not exist, such as "))
        << made.err;
  }
  EXPECT_TRUE(project.Exists("other/other.tprj"));
  EXPECT_FALSE(project.Exists("gone"));
}

TEST(CliForeign, LinkCommandsDivideADatabaseIntoApplications) {
  ForeignProject project;
  const std::string folder = project.PathOf("other/out");
  std::filesystem::create_directories(folder + "/CMakeFiles/app.dir");
  std::filesystem::create_directories(folder + "/CMakeFiles/part.dir");
  const auto entry = [&](const std::string& target, const std::string& file) {
    return "{\"directory\": \"" + folder + "\", \"file\": \"../src/" + file +
           "\", \"command\": \"gcc -I../inc -DLEVEL=7 '-DNAME=\\\"n\\\"' -c ../src/" + file +
           " -o CMakeFiles/" + target + ".dir/" + file + ".o\"}";
  };
  project.Write("other/out/compile_commands.json",
                "[" + entry("app", "main.c") + "," + entry("part", "part/part.c") + "]");
  project.Write("other/out/CMakeFiles/app.dir/link.txt",
                "/usr/bin/gcc -O3 CMakeFiles/app.dir/main.c.o -o app libpart.a -lm\n");
  project.Write("other/out/CMakeFiles/part.dir/link.txt",
                "/usr/bin/ar qc libpart.a CMakeFiles/part.dir/part/part.c.o\n"
                "/usr/bin/ranlib libpart.a\n");
  EXPECT_EQ(project.Result({"other/out/compile_commands.json", "--to", "other"}, "Standard/app"),
            "n 7");
  EXPECT_TRUE(project.Exists("other/build/Standard/libpart.a"));
}

TEST(CliForeign, SpecificationsOfTheCLibraryBecomeOptions) {
  if (FindProgram("arm-none-eabi-gcc").empty())
    GTEST_SKIP() << "gcc-arm-none-eabi is not installed";
  ForeignProject project;
  project.Write("other/src/main.c",
                "#include <stdlib.h>\nint main(void) { free(malloc(4)); return 0; }\n");
  project.Write("other/compile_commands.json",
                R"([{"file": "src/main.c", "command": "arm-none-eabi-gcc -mcpu=cortex-m3 )"
                R"(--specs=nano.specs -specs=nosys.specs -c src/main.c"}])");
  project.Out({"import", "other"});
  EXPECT_EQ(project.Out({"options", "get", "Target.CLibrary", "other"}), "newlib-nano\n");
  EXPECT_EQ(project.Out({"options", "get", "Linker.Extra", "other"}), "-specs=nosys.specs\n");
  for (const char* each : {"Target.FlashSize", "Target.RamSize"}) {
    project.Out({"options", "set", each, "65536", "other"});
  }
  const auto built = project.Run({"build", "other"});
  EXPECT_EQ(built.code, 0) << built.out << built.err;
}

TEST(CliForeign, WhatCanNotBeImportedIsToldAndLeavesNothing) {
  ForeignProject project;
  project.Write("other/compile_commands.json", "{\"a\": [");
  project.Write("other/none.json", "[]");
  project.Write("other/Makefile", "all:\n\ttouch made\n");
  project.Write("other/platformio.ini", "[platformio]\nsrc_dir = src\n");
  project.Write("other/x.cproject", "<a><b></a>");
  project.Write(
      "other/cut.cproject",
      "<cproject><storageModule>\n<configuration name=\"A\"><folderInfo resourcePath=\"\"/>");
  const struct {
    std::vector<std::string> words;
    int code;
    const char* said;
  } rows[] = {
      {{"other/compile_commands.json"}, 3, "it is not a compilation database"},
      {{"other/none.json", "--from", "compile-commands"}, 3, "it contains no compiler commands"},
      {{"other/Makefile"}, 2, "Use --run-make if you trust it."},
      {{"other/Makefile", "--run-make"}, 3, "prints no compiler commands"},
      {{"other/platformio.ini"}, 3, "it has no section [env:NAME]"},
      {{"other/x.cproject", "--from", "cproject"}, 3, "not a C/C++ project description"},
      {{"other/cut.cproject", "--from", "cproject"}, 3, "it is damaged: line 2: "},
      {{"other/none.json", "--from", "sketch"}, 3, "there is no *.ino file"},
      {{"other/gone.ini", "--from", "platformio"}, 3, "does not exist"},
      {{"other/src"}, 3, "contains nothing that can be imported"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> words = row.words;
    words.insert(words.begin(), "import");
    project.ExpectRefusal(words, row.code, row.said);
  }
  EXPECT_FALSE(project.Exists("other/other.tprj"));
  EXPECT_FALSE(project.Exists("other/made"));
}

TEST(CliForeign, AnExistingProjectIsReplacedOnlyOnRequest) {
  ForeignProject project;
  project.Write("other/platformio.ini", "[env:pc]\nplatform = native\nbuild_flags = -DLEVEL=1\n");
  project.Write("other/other.tapp", "mine");
  project.ExpectRefusal({"import", "other"}, 2, "other/other.tapp already exists");
  EXPECT_EQ(project.Read("other/other.tapp"), "mine");
  EXPECT_FALSE(project.Exists("other/other.tprj"));
  EXPECT_TRUE(Has(project.Run({"import", "other", "--yes"}).err, "other/other.tapp.orig"));
  EXPECT_EQ(project.Read("other/other.tapp.orig"), "mine");
}

TEST(CliForeign, EnvironmentsBecomeConfigurations) {
  ForeignProject project;
  std::filesystem::create_directories(project.PathOf("other/lib/part"));
  std::filesystem::rename(project.PathOf("other/src/part/part.c"),
                          project.PathOf("other/lib/part/part.c"));
  std::filesystem::rename(project.PathOf("other/inc/part.h"),
                          project.PathOf("other/lib/part/part.h"));
  project.Write("other/src/slow.c", "#error only in the other environment\n");
  project.Write("other/platformio.ini",
                "[platformio]\ndefault_envs = fast\n[env]\nplatform = native\n"
                "build_flags = -DNAME='\"pio\"' !touch made\n"
                "[env:slow]\nbuild_src_filter = +<*>\n"
                "[env:fast]\nbuild_flags = ${env.build_flags}\n  -DLEVEL=4\n  !touch made\n  -O2\n"
                "build_src_filter = +<*> -<slow.c>\nextra_scripts = x.py\nlib_deps = far/away@1\n");
  EXPECT_EQ(project.Result({"other"}, "fast/other"), "pio 4");
  EXPECT_FALSE(project.Exists("other/made"));
  for (const char* said : {"[env:fast] the program touch made was not run",
                           "[env:fast] extra_scripts was not imported",
                           "[env:fast] the library far/away@1 was not imported"}) {
    EXPECT_TRUE(Has(project.remarks, said)) << project.remarks;
  }
  EXPECT_EQ(project.Out({"options", "get", "Compiler.Optimize", "other"}), "2\n");
  EXPECT_EQ(project.Run({"build", "other", "--config", "slow"}).code, 1);
}

TEST(CliForeign, KeysOfEnvironmentsBecomeOptionsOrRemarks) {
  ForeignProject project;
  project.Write("other/platformio.ini",
                "[platformio]\nextra_configs = more.ini\n[base]\nstrange = 1\n"
                "[env]\nextends = base\nupload_port = /dev/ttyUSB7\nupload_speed = 57600\n"
                "monitor_port = /dev/ttyACM3\nmonitor_speed = 9600\n"
                "[env:blue]\nboard = bluepill_f103c8\nupload_protocol = jlink\n"
                "[env:pc]\nplatform = native\nupload_protocol = custom\nmonitor_speed = fast\n"
                "build_flags = -D ${sysenv.HOME}x -O1 -I$BUILD_DIR -DLEVEL=1\n");
  const auto made = project.Run({"import", "other"});
  for (const char* said :
       {"[platformio] extra_configs was not imported", "[env:blue] strange was not imported",
        "[env:pc] upload_protocol = custom was not", "[env:pc] monitor_speed = fast was not",
        "the flag -D ${sysenv.HOME}x was not imported", "the flag -I$BUILD_DIR was not"}) {
    EXPECT_TRUE(Has(made.err, said)) << said << made.err;
  }
  const struct {
    const char *option, *config, *value;
  } rows[] = {
      {"Upload.Port", "blue", "/dev/ttyUSB7"},  {"Upload.Speed", "blue", "57600"},
      {"Monitor.Port", "blue", "/dev/ttyACM3"}, {"Monitor.Speed", "blue", "9600"},
      {"Upload.Programmer", "blue", "jlink"},   {"Compiler.Defines", "pc", "LEVEL=1"},
      {"Compiler.Optimize", "pc", "1"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(project.Out({"options", "get", row.option, "other", "--config", row.config}),
              row.value + std::string("\n"))
        << row.option;
  }
}

TEST(CliForeign, BoardsOfEnvironmentsAreFoundByTheirIdentifiers) {
  ForeignProject project;
  const std::pair<std::string, const char*> boards[] = {{"bluepill_f103c8", "Blue Pill"},
                                                        {"blackpill_f411ce", "Black Pill F411"},
                                                        {"nucleo_l476rg", "NUCLEO-L476RG"},
                                                        {"pico", "Raspberry Pi Pico"},
                                                        {"megaatmega2560", "Arduino Mega 2560"}};
  std::string text;
  for (const auto& [id, label] : boards) text += "[env:" + id + "]\nboard = " + id + "\n";
  project.Write("other/platformio.ini", text);
  project.Out({"import", "other"});
  for (const auto& [id, label] : boards) {
    EXPECT_EQ(project.Out({"options", "get", "Target.Board", "other", "--config", id}),
              label + std::string("\n"));
  }
}

TEST(CliForeign, ABoardThatIsUnknownIsReportedWithItsNearestTargets) {
  ForeignProject project;
  const struct {
    const char *keys, *said;
  } rows[] = {
      {"board = nucleo_f401rc",
       "the board nucleo_f401rc is not in the catalogue, whose nearest "
       "targets are \"NUCLEO-F401RE\""},
      {"board = genericSTM32F103C9", "\"Blue Pill\""},
      {"board_build.mcu = stm32f103c8t6x",
       "the board stm32f103c8t6x is not in the catalogue, whose "
       "nearest targets are \"STM32F103C8\""},
      // The clock alone says nothing about the device.
      {"board = xyzzy\nboard_build.f_cpu = 8000000L",
       "the board xyzzy is not in the catalogue; see `tarn targets`"},
      {"monitor_speed = 9600", "it names no board; set Target.Toolchain"},
  };
  for (const auto& row : rows) {
    project.Write("other/platformio.ini",
                  std::string("[env:one]\nplatform = ststm32\n") + row.keys + "\n");
    const auto made = project.Run({"import", "other", "--yes"});
    EXPECT_TRUE(Has(made.err, row.said)) << row.keys << "\n" << made.err;
  }
  std::filesystem::remove(project.PathOf("other/platformio.ini"));
  project.Write(
      "other/.cproject",
      "<cproject><storageModule><configuration name=\"One\"><folderInfo resourcePath=\"\">"
      "<toolChain superClass=\"x.toolchain.gnu.exe\"><option superClass=\"x.target.mcu\" "
      "value=\"stm32f103c8t6x\"/></toolChain></folderInfo></configuration>"
      "</storageModule></cproject>");
  const auto made = project.Run({"import", "other", "--yes"});
  EXPECT_TRUE(Has(made.err,
                  "the device stm32f103c8t6x is not in the catalogue, whose nearest "
                  "targets are \"STM32F103C8\""))
      << made.err;
}

// Start-up code is added where no source has some, and only for the configurations that need it.
TEST(CliForeign, AFirmwareWithoutStartUpCodeGetsThatOfItsTarget) {
  if (FindProgram("arm-none-eabi-gcc").empty())
    GTEST_SKIP() << "gcc-arm-none-eabi is not installed";
  ForeignProject project;
  project.Write("other/src/main.c", "int main(void) { return 0; }\n");
  project.Write("other/platformio.ini",
                "[platformio]\nsrc_dir = src\n[env:blue]\nboard = bluepill_f103c8\n"
                "build_src_filter = +<main.c>\n[env:pc]\nplatform = native\n"
                "build_src_filter = +<main.c>\n");
  const auto made = project.Run({"import", "other"});
  EXPECT_EQ(made.code, 0) << made.err;
  EXPECT_TRUE(Has(made.err, "startup/startup.c was added")) << made.err;
  EXPECT_EQ(Built(project.Out({"build", "other"})), "main.c startup.c syscalls.c other.elf");
  EXPECT_EQ(Built(project.Out({"build", "other", "--config", "pc"})), "main.c other");
  project.Write("other/platformio.ini",
                "[platformio]\nsrc_dir = src\n[env:pico]\nboard = pico\n"
                "build_src_filter = +<main.c>\n");
  project.Out({"import", "other", "--yes"});
  EXPECT_EQ(Built(project.Out({"build", "other"})),
            "main.c boot2.s startup.c syscalls.c other.elf");
  EXPECT_TRUE(project.Exists("other/build/pico/other.uf2"));
}

TEST(CliForeign, StartUpCodeOfASourceIsKeptAndWhatIsMissingIsNamed) {
  const struct {
    const char *source, *flags, *said;  // of the remark; nullptr: none about start-up
  } rows[] = {
      {"/* Reset_Handler is elsewhere */ int main(void) { return 0; }\n", "",
       "startup.c was added"},
      {"extern void Reset_Handler(void);\nint main(void) { return 0; }\n", "",
       "startup.c was added"},
      {"void Reset_Handler(void) {}\n", "", nullptr},
      {"__attribute__((section(\".isr_vector\"))) int table[] = {1};\n", "", nullptr},
      {"int main(void) { return 0; }\n", "build_flags = -T own.ld\n", "add the one that belongs"},
  };
  for (const auto& row : rows) {
    ForeignProject project;
    project.Write("other/src/main.c", row.source);
    project.Write("other/platformio.ini",
                  std::string("[env:blue]\nboard = bluepill_f103c8\n") + row.flags);
    const auto made = project.Run({"import", "other"});
    EXPECT_EQ(made.code, 0) << made.err;
    EXPECT_EQ(Has(made.err, row.said == nullptr ? "start" : row.said), row.said != nullptr)
        << row.source << made.err;
  }
}

TEST(CliForeign, ADescriptionWithConfigurationsIsImported) {
  ForeignProject project;
  const auto configuration = [](const std::string& name, const std::string& level) {
    return "<cconfiguration id=\"" + name +
           "\"><storageModule moduleId=\"cdtBuildSystem\">"
           "<configuration name=\"" +
           name +
           "\" postbuildStep=\"touch made\">"
           "<folderInfo resourcePath=\"\"><toolChain superClass=\"x.toolchain.gnu.exe\">"
           "<tool superClass=\"x.c.compiler\">"
           "<option superClass=\"x.c.compiler.option.optimization.level\" "
           "value=\"x.optimization.level.more\" valueType=\"enumerated\"/>"
           "<option superClass=\"x.include\" valueType=\"includePath\">"
           "<listOptionValue value=\"&quot;${workspace_loc:/${ProjName}/inc}&quot;\"/>"
           "<listOptionValue value=\"${FAR}/inc\"/></option>"
           "<option superClass=\"x.symbols\" valueType=\"definedSymbols\">"
           "<listOptionValue value=\"LEVEL=" +
           level +
           "\"/>"
           "<listOptionValue value=\"NAME=&quot;cdt&quot;\"/></option>"
           "</tool></toolChain></folderInfo><sourceEntries>"
           "<entry excluding=\"test\" kind=\"sourcePath\" name=\"\"/></sourceEntries>"
           "</configuration></storageModule></cconfiguration>";
  };
  project.Write("other/.cproject",
                "<?xml version=\"1.0\"?><?fileVersion 4.0.0?><cproject>"
                "<storageModule moduleId=\"org.core.settings\">" +
                    configuration("Debug", "8") + configuration("Release", "9") +
                    "</storageModule></cproject>");
  EXPECT_EQ(project.Result({"other"}, "Debug/other"), "cdt 8");
  EXPECT_TRUE(Has(project.remarks, "${FAR}/inc was not imported")) << project.remarks;
  EXPECT_TRUE(Has(project.remarks, "the build step touch made was not imported"));
  EXPECT_EQ(project.Result({"other", "--yes"}, "Release/other", {"--config", "Release"}), "cdt 9");
}

// Plug-ins of different makers for the same compilers.
TEST(CliForeign, DescriptionsOfFirmwareAreImported) {
  ForeignProject project;
  const auto option = [](const std::string& id, const std::string& value) {
    return "<option superClass=\"" + id + "\" value=\"" + value + "\"/>";
  };
  const std::string script =
      "<option superClass=\"a.arm.linker.scriptfile\" "
      "valueType=\"stringList\"><listOptionValue value=\"&quot;"
      "${workspace_loc:/${ProjName}/fw.ld}&quot;\"/></option>";
  const std::string maker = "com.maker.stm32.mcu.gnu.";
  const std::string linker = "<tool superClass=\"a.tool.c.linker\">";
  const struct {
    std::string chain, options;
    std::vector<std::pair<const char*, const char*>> values;
    const char* said;
  } rows[] = {
      {"a.gnuarm.cross.toolchain",
       option("a.arm.target.family", "a.arm.target.mcpu.cortex-m4") +
           option("a.arm.target.fpu.unit", "a.arm.target.fpu.unit.fpv4spd16") +
           option("a.arm.target.fpu.abi", "a.arm.target.fpu.abi.softfp") +
           option("a.optimization.level", "a.optimization.level.debug") + linker + script +
           option("a.c.linker.usenewlibnano", "true") + option("a.linker.usenewlibnosys", "true") +
           option("a.c.linker.strange", "a.strange.on") + "</tool>",
       {{"Toolchain", "arm-gcc"},
        {"Cpu", "cortex-m4"},
        {"Fpu", "fpv4-sp-d16"},
        {"FloatAbi", "softfp"},
        {"CLibrary", "newlib-nano"}},
       "the option \"linker.strange\" = on was not imported"},
      {maker + "toolchain.exe",
       option(maker + "option.target_mcu", "STM32F407VGTx") + option(maker + "convert", "true") +
           linker + option(maker + "linker.option.script", "${workspace_loc:/${ProjName}/fw.ld}") +
           "</tool>",
       {{"Toolchain", "arm-gcc"}, {"Cpu", "cortex-m4"}, {"Fpu", "fpv4-sp-d16"}},
       "the option \"gnu.convert\" = true was not imported"},
      {"b.cross.riscv.toolchain",
       option("b.target.isa.base", "b.isa.base.rv32i") + option("b.isa.multiply", "true") +
           option("b.isa.compressed", "true") + option("b.abi.integer", "b.abi.integer.ilp32") +
           linker + option("b.linker.script", "../fw.ld") +
           option("b.linker.other", "-u one -T ${FAR}/x.ld -u two") + "</tool>",
       {{"Toolchain", "riscv-gcc"}, {"Arch", "rv32imc"}, {"Abi", "ilp32"}},
       "${FAR}/x.ld was not imported"},
  };
  for (const auto& row : rows) {
    project.Write("other/.cproject",
                  "<cproject><storageModule><configuration name=\"One\"><folderInfo "
                  "resourcePath=\"\"><toolChain superClass=\"" +
                      row.chain + "\">" + row.options +
                      "</toolChain></folderInfo></configuration></storageModule></cproject>");
    const auto made = project.Run({"import", "other", "--yes"});
    EXPECT_TRUE(Has(made.err, row.said)) << made.err;
    for (const auto& [name, value] : row.values) {
      EXPECT_EQ(project.Out({"options", "get", std::string("Target.") + name, "other"}),
                value + std::string("\n"))
          << row.chain << name;
    }
    EXPECT_EQ(project.Out({"options", "get", "Linker.Script", "other"}), "fw.ld\n");
  }
  EXPECT_EQ(project.Out({"options", "get", "Linker.Extra", "other"}), "-u one -u two\n");
}

// The folder's name contains the variable that is replaced by it.
TEST(CliForeign, NamesThatAreAmbiguousAreImportedAnyway) {
  CliProject project;
  const std::string folder = "${workspace_loc:/other}";
  std::filesystem::create_directories(project.PathOf(folder + "/src"));
  const std::string configuration =
      "<configuration name=\"One\"><folderInfo resourcePath=\"\"><toolChain "
      "superClass=\"x.toolchain.gnu.exe\"><option superClass=\"x\" valueType=\"includePath\">"
      "<listOptionValue value=\"${workspace_loc:/other}/inc\"/></option></toolChain></folderInfo>"
      "</configuration>";
  project.Edit(folder + "/src/main.c", "int main(void) { return 0; }\n");
  project.Edit(folder + "/.project", "<p><name>other</name></p>");
  project.Edit(folder + "/.cproject", "<cproject><storageModule>" + configuration + configuration +
                                          "</storageModule></cproject>");
  project.Out({"import", folder});
  EXPECT_EQ(project.Out({"config", "list", folder}), "other\n  Standard\n* One\n  One 2\n");
  project.Edit("core/platformio.ini",
               "[env:a/b]\nplatform = native\n[env:A_b]\nplatform = native\n");
  project.Edit("core/src/main.c", "int main(void) { return 0; }\n");
  project.Out({"import", "core"});
  EXPECT_EQ(project.Out({"config", "list", "core"}), "core\n  Standard\n* a_b\n  A_b 2\n");
}

TEST(CliForeign, AMakefileIsImportedByADryRun) {
  if (FindProgram("make").empty()) GTEST_SKIP() << "make is not installed";
  ForeignProject project;
  project.Write(
      "other/Makefile",
      "prog: main.o libpart.a\n\tgcc -o prog main.o -L. -lpart\n"
      "main.o: src/main.c\n\tgcc -Iinc -DNAME='\"make\"' -c $< -o $@\n"
      "libpart.a: part.o\n\trm -f $@ && ar rc $@ $^ ; ranlib $@\n"
      "part.o: src/part/part.c\n\tcd src/part; gcc -DLEVEL=5 \\\n\t  -I../../inc -c part.c "
      "-o ../../part.o\n");
  EXPECT_EQ(project.Result({"other/Makefile", "--run-make"}, "Standard/prog"), "make 5");
  EXPECT_FALSE(project.Exists("other/main.o"));
}

TEST(CliForeign, AMakefileMayCallTheAssemblerAndTheLinker) {
  if (FindProgram("make").empty()) GTEST_SKIP() << "make is not installed";
  if (FindProgram("arm-none-eabi-gcc").empty())
    GTEST_SKIP() << "gcc-arm-none-eabi is not installed";
  ForeignProject project;
  project.Write("other/fw.ld",
                "ENTRY(Reset_Handler)\n"
                "SECTIONS { .text 0 : { KEEP(*(.isr_vector)) *(.text*) } }\n");
  project.Write("other/src/main.c", "int main(void) { return START; }\n");
  project.Write(
      "other/start.s",
      " .section .isr_vector, \"a\"\n .word Reset_Handler\n .text\n .global Reset_Handler\n"
      " .thumb_func\n"
      "Reset_Handler: bl main\n b .\n");
  project.Write("other/Makefile",
                "P = arm-none-eabi-\nF = -mcpu=cortex-m3 -mthumb\n"
                "fw.bin: fw.elf\n\t$(P)objcopy -O binary $< $@ 2>&1\n"
                "fw.elf: main.o start.o\n\t$(P)ld -T fw.ld -Map=fw.map -o $@ $^ none.o && $(P)size "
                "$@\n\techo made $@\n"
                "main.o: src/main.c\n\t$(P)gcc $F -MM $< > main.d\n\t$(P)gcc $F -DSTART=1 -c $< -o "
                "$@\n"
                "start.o: start.s\n\t$(P)as $F $< -o $@\n");
  const auto made = project.Run({"import", "--run-make", "other"});
  EXPECT_EQ(made.code, 0) << made.err;
  EXPECT_EQ(made.err,
            "tarn: none.o was not imported: nothing that makes it is recorded\ntarn: the command "
            "arm-none-eabi-objcopy -O binary fw.elf fw.bin 2>&1 was not imported\n");
  EXPECT_EQ(Built(project.Out({"build", "other"})), "main.c start.s fw.elf");
  EXPECT_EQ(project.Out({"options", "get", "Linker.Script", "other"}), "fw.ld\n");
}

TEST(CliForeign, ASketchIsBuiltWithItsCoreAndLibraries) {
  const bool hasCore = std::filesystem::exists("/usr/share/arduino/hardware/arduino/avr");
  if (!hasCore) GTEST_SKIP() << "arduino-core-avr is not installed";
  if (FindProgram("avr-gcc").empty()) GTEST_SKIP() << "gcc-avr is not installed";
  CliProject project;
  std::filesystem::create_directories(project.PathOf("Blink"));
  std::filesystem::create_directories(project.PathOf("core"));
  project.Write("core/core.ino", "void setup() {}\nvoid loop() {}\n");
  project.Out({"import", "core"});
  EXPECT_TRUE(project.Exists("core/core 2.tapp"));
  project.Write("Blink/Blink.ino",
                "#include <Wire.h>\nvoid setup() { Wire.begin(); pinMode(pin(), OUTPUT); }\n"
                "void loop() { toggle(); delay(100); }\n");
  project.Write("Blink/more.ino",
                "int pin() { return 13; }\nvoid toggle() { digitalWrite(pin(), "
                "!digitalRead(pin())); }\n");
  project.ExpectRefusal({"import", "Blink", "--board", "una"}, 3,
                        "unknown board \"una\". Did you mean \"uno\"");
  const auto made = project.Run({"import", "Blink"});
  EXPECT_EQ(made.code, 0) << made.err;
  EXPECT_TRUE(Has(made.err, "more.ino was copied to Blink.ino.cpp")) << made.err;
  const auto built = project.Run({"build", "Blink"});
  EXPECT_EQ(built.code, 0) << built.out << built.err;
  EXPECT_TRUE(project.Exists("Blink/build/Standard/Blink.elf"));
  EXPECT_EQ(project.Out({"options", "get", "Target.Device", "Blink"}), "atmega328p\n");
  // The first processor in the menu of a board is the usual one.
  const std::pair<const char*, const char*> boards[] = {{"nano", "atmega328p"},
                                                        {"nanoatmega168", "atmega168"},
                                                        {"mega", "atmega2560"},
                                                        {"megaatmega1280", "atmega1280"},
                                                        {"pro8MHzatmega328", "atmega328p"}};
  for (const auto& [board, device] : boards) {
    project.Out({"import", "Blink", "--yes", "--board", board});
    EXPECT_EQ(project.Out({"options", "get", "Target.Device", "Blink"}), device + std::string("\n"))
        << board;
  }
}

}  // namespace
}  // namespace tarn::host
