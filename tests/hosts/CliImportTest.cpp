// Import of projects in the old format, from the file to the built program, with the installed
// script; and the errors for scripts of other kinds.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <set>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

constexpr const char* kOlder =
    "; an older project\r\n"
    "[Project]\r\n"
    "Form = 1\r\n"
    "Name = Old & new\r\n"
    "Target = HOST\r\n"
    "Speed = fast\r\n"
    "Configuration = debug\r\n"
    "\r\n"
    "[Options]\r\n"
    "Optimize = none\r\n"
    "Optimize = size\r\n"
    "Defines = RESULT=3 ; TEXT=\"a|$b\"\r\n"
    "Include = inc\\; src\r\n"
    "Warnings = loud\r\n"
    "[Options Debug]\r\n"
    "Optimize = some\r\n"
    "[Debugger]\r\n"
    "Port = 1\r\n"
    "[Files]\r\n"
    "src\\main.c\r\n"
    "notes.txt\r\n"
    "[Files Parts/Inner]\r\n"
    ".\\src\\..\\src\\part.c\r\n"
    "src/main.c\r\n"
    "inc\\part.h\r\n";

constexpr const char* kRemarks =
    "tarn: old.prj:6: Speed was not imported\n"
    "tarn: old.prj:11: Optimize is set twice; this one is used\n"
    "tarn: old.prj:14: Warnings = loud was not imported\n"
    "tarn: old.prj:17: the section [Debugger] was not imported\n"
    "tarn: old.prj:21: notes.txt was imported, but it does not exist\n"
    "tarn: old.prj:24: src/main.c is listed twice; the first one is used\n";

// Returns the options of one configuration of the project above.
std::string OptionsOf(const std::string& configuration, const std::string& optimize) {
  return "\t\t<Config Header=\"" + configuration +
         "\" >\r\n"
         "\t\t\t<Set Header=\"Application\" >\r\n"
         "\t\t\t\t<Section Header=\"Compiler\" >\r\n"
         "\t\t\t\t\t<Property Header=\"Defines\" Removable=\"Yes\" "
         "Value=\"RESULT=3;TEXT=&quot;a&slash;$$b&quot;\" />\r\n"
         "\t\t\t\t\t<Property Header=\"Optimize\" Removable=\"Yes\" Value=\"" +
         optimize +
         "\" />\r\n"
         "\t\t\t\t</Section>\r\n"
         "\t\t\t\t<Section Header=\"Directories\" >\r\n"
         "\t\t\t\t\t<Property Header=\"Include\" Removable=\"Yes\" Value=\"inc/;src\" />\r\n"
         "\t\t\t\t</Section>\r\n"
         "\t\t\t\t<Section Header=\"Target\" >\r\n"
         "\t\t\t\t\t<Property Header=\"Toolchain\" Removable=\"Yes\" Value=\"host-gcc\" />\r\n"
         "\t\t\t\t</Section>\r\n"
         "\t\t\t</Set>\r\n"
         "\t\t</Config>\r\n";
}

const std::string kApplication =
    "\r\n<Application Header=\"Old & new\" Extern=\".\\old.tapp\" Path=\".\\old.tapp\" "
    "Config=\"Debug\" >\r\n"
    "\t<Configs>\r\n"
    "\t\t<Config Header=\"Debug\" />\r\n"
    "\t</Configs>\r\n"
    "\t<Options>\r\n" +
    OptionsOf("Standard", "s") + OptionsOf("Debug", "1") +
    "\t</Options>\r\n"
    "\t<C Header=\"main.c\" Path=\".\\src\\main.c\" />\r\n"
    "\t<Text Header=\"notes.txt\" Path=\".\\notes.txt\" />\r\n"
    "\t<Group Header=\"Parts\" >\r\n"
    "\t\t<Group Header=\"Inner\" >\r\n"
    "\t\t\t<C Header=\"part.c\" Path=\".\\src\\part.c\" />\r\n"
    "\t\t\t<Header Header=\"part.h\" Path=\".\\inc\\part.h\" />\r\n"
    "\t\t</Group>\r\n"
    "\t</Group>\r\n"
    "</Application>";

// A folder that contains only the sources of the project above.
struct OlderProject : CliProject {
  OlderProject() {
    std::filesystem::remove(PathOf("demo.tprj"));
    std::filesystem::remove(PathOf("app.tapp"));
    std::filesystem::remove_all(PathOf("src"));
    for (const char* each : {"src", "inc"}) std::filesystem::create_directory(PathOf(each));
    Write("src/main.c", "#include \"part.h\"\nint main(void) { return part() - RESULT; }\n");
    Write("src/part.c", "#include \"part.h\"\nint part(void) { return 3; }\n");
    Write("inc/part.h", "int part(void);\n");
    Write("old.prj", kOlder);
  }
  std::string Script() const {
    return std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/bin/k418/k418.pl";
  }
  std::set<std::string> Files() const {
    std::set<std::string> names;
    for (const auto& each : std::filesystem::recursive_directory_iterator(PathOf("."))) {
      names.insert(each.path().lexically_relative(PathOf(".")).string());
    }
    return names;
  }
};

TEST(CliImport, AnOlderProjectIsCarriedOverOpensAndBuilds) {
  OlderProject project;
  const auto made = project.Run({"import", "old.prj"});
  EXPECT_EQ(made.code, 0);
  EXPECT_EQ(made.out, "created old.tprj\nRun `tarn build old.tprj` to build it.\n");
  EXPECT_EQ(made.err, kRemarks);
  EXPECT_EQ(project.Read("old.tapp"), kApplication);
  EXPECT_EQ(project.Run({"config", "list"}).out, "Old & new\n  Standard\n* Debug\n");
  project.Out({"build"});
  EXPECT_EQ(project.RunProgram(project.PathOf("build/Debug/old"), {}).code, 0);
}

TEST(CliImport, AWorkspaceBecomesAProjectOfSeveralApplications) {
  OlderProject project;
  std::filesystem::create_directory(project.PathOf("boot"));
  project.Write("boot/boot.prj",
                "[Project]\nForm = 1\nName = old & NEW\nTarget = host\n[Files]\nboot.c\n");
  project.Write("boot/boot.c", "int main(void) { return 0; }\n");
  project.Write("all.stw",
                "# both\n[Workspace]\nForm = 1\nActive = OLD & new 2\nProject = old.prj\n"
                "Project = boot\\boot.prj\nProject = ./boot/boot.prj\n");
  const std::string made = project.Out({"import", "all.stw", "--json"});
  EXPECT_NE(made.find("all.stw:7: boot/boot.prj is listed twice"), std::string::npos);
  EXPECT_EQ(project.Run({"tree"}).out,
            "Project 'all'  all.tprj\n"
            "  Old & new  [Debug]  old.tapp\n"
            "    main.c  src/main.c\n"
            "    notes.txt\n"
            "    Parts\n"
            "      Inner\n"
            "        part.c  src/part.c\n"
            "        part.h  inc/part.h\n"
            "  old & NEW 2  [Standard]  (active)  boot/boot.tapp\n"
            "    boot.c  boot/boot.c\n");
  EXPECT_EQ(project.Run({"build", "--app", "old & new 2"}).code, 0);
  EXPECT_EQ(project.RunProgram(project.PathOf("boot/build/Standard/boot"), {}).code, 0);
  // A project that can't be converted is left out, and the user is informed.
  project.Write("part.stw", "[Workspace]\nForm = 1\nProject = gone.prj\nProject = old.prj\n");
  const auto part = project.Run({"import", "part.stw"});
  EXPECT_EQ(part.code, 3);
  EXPECT_NE(part.err.find("only partly converted"), std::string::npos) << part.err;
  EXPECT_NE(part.err.find("part.stw:3: gone.prj is skipped"), std::string::npos) << part.err;
  EXPECT_EQ(project.Run({"tree", "part.tprj"}).code, 0);
}

TEST(CliImport, WhatIsThereIsReplacedOnlyWithConsentAndIsKeptBesides) {
  OlderProject project;
  ASSERT_EQ(project.Run({"import", "old.prj"}).code, 0);
  project.Write("old.tprj", "mine");
  const auto refused = project.Run({"import", "old.prj"});
  EXPECT_EQ(refused.code, 2);
  EXPECT_EQ(refused.err,
            "tarn: old.tprj already exists and was not changed. Use --yes to replace it.\n");
  const std::string asked =
      "printf 'no\\n' | script -qec '" TARN_PROGRAM " import old.prj' /dev/null";
  EXPECT_EQ(project.RunProgram("sh", {"-c", asked}).code, 2);
  EXPECT_EQ(project.Read("old.tprj"), "mine");
  const auto replaced = project.Run({"import", "-y", "old.prj"});
  EXPECT_EQ(replaced.code, 0);
  EXPECT_NE(replaced.err.find("/old.tprj.orig\n"), std::string::npos) << replaced.err;
  EXPECT_EQ(project.Read("old.tprj.orig"), "mine");
  EXPECT_FALSE(project.Exists("old.tapp.orig")) << "it was the same";
  project.Write("old.tprj", "mine again");
  const std::string agreed =
      "printf 'y\\n' | script -qec '" TARN_PROGRAM " import old.prj' /dev/null";
  EXPECT_EQ(project.RunProgram("sh", {"-c", agreed}).code, 0);
  EXPECT_EQ(project.Read("old.tprj.orig"), "mine");
  EXPECT_EQ(project.Read("old.tprj.orig2"), "mine again");
}

TEST(CliImport, TheScriptRefusesWhatItCanNotReadOrWriteAndLeavesNothing) {
  OlderProject project;
  project.Write("other.tapp", "");
  chmod(project.PathOf("other.tapp").c_str(), 0444);
  const std::string head = "[Project]\nForm = 1\n";
  const struct {
    const char* name;
    std::string text;
    int code;
    const char* said;
  } cases[] = {
      {"empty.prj", "\n; nothing\n", 5, "empty.prj: empty, so not a project in the old format\n"},
      {"text.prj", "hello\n", 5,
       "text.prj:1: not a project in the old format, which starts with [Project]\n"},
      {"files.prj", "[Files]\na.c\n", 5,
       "files.prj:1: not a project in the old format, which starts with"},
      {"bytes.prj",
       std::string("\x7F"
                   "ELF\0\1",
                   6),
       5, "bytes.prj:1: a line with control"},
      {"later.prj", "[Project]\nForm = 2\n", 5, "later.prj:1: the form is 2, but only 1 can be"},
      {"none.stw", "[Workspace]\nForm = 1\n", 5, "none.stw: no project that can be converted\n"},
      {"line.prj", head + "Name\n", 4, "line.prj:3: not a KEY = VALUE line\n"},
      {"head.prj", head + "[Files\n", 4, "head.prj:3: a section without its closing bracket\n"},
      {"zero.prj", head + std::string("[Files a\0b]\n", 12), 4, "zero.prj:3: a line with control"},
      {"src", "", 3, "src: not a file\n"},
      {"gone.prj", "", 2, "gone.prj: no such file\n"},
      {"other.prj", head, 6, "other.tapp: read-only\n"},
  };
  for (const auto& each : cases) {
    if (!each.text.empty()) project.Write(each.name, each.text);
    const auto before = project.Files();
    const auto run =
        project.RunProgram("perl", {"-w", project.Script(), project.PathOf(each.name)});
    EXPECT_EQ(run.code, each.code) << each.name;
    EXPECT_NE(run.out.find(each.said), std::string::npos) << each.name << ": " << run.out;
    EXPECT_EQ(run.err, "") << each.name;
    EXPECT_EQ(project.Files(), before) << each.name;
  }
}

TEST(CliImport, AFullDiskLeavesNeitherPartsNorWhatWasThereLess) {
  OlderProject project;
  project.Write("old.tapp", "mine");
  const auto before = project.Files();
  const auto run = project.RunProgram(
      "strace", {"-qq", "-o", "/dev/null", "-e", "inject=fsync:error=ENOSPC:when=2", "perl", "-w",
                 project.Script(), project.PathOf("old.prj")});
  EXPECT_EQ(run.code, 6) << run.out << run.err;
  EXPECT_NE(run.out.find("No space left on device"), std::string::npos) << run.out;
  EXPECT_EQ(project.Files(), before);
  EXPECT_EQ(project.Read("old.tapp"), "mine");
}

TEST(CliImport, EachEndOfAScriptHasItsAnswerAndExitCode) {
  OlderProject project;
  const std::string root = project.PathOf("tarn");
  std::filesystem::create_directories(root + "/bin/k418");
  std::filesystem::create_directory_symlink(
      std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/config", root + "/config");
  std::filesystem::create_directories(project.PathOf("settings/user"));
  project.environment[0].second = root;
  project.environment[1].second = project.PathOf("settings");
  const std::string hint = "The conversion ";
  const struct {
    const char* script;
    const char* settings;
    int code;
    std::string said;
  } cases[] = {
      {"exit 0", "", 3, "/old.tprj can't be opened.\ntarn: The file '"},
      {"print qq(no luck\\n); exit 1", "", 3, "tarn: old.prj can't be converted.\ntarn: no luck\n"},
      {"exit 2", "", 3, "old.prj' does not exist.\n"},
      {"exit 3", "", 3, "old.prj' in the old format can't be read.\n"},
      {"exit 4", "", 3, "old.prj' is damaged; only"},
      {"exit 5", "", 3, "old.prj' has a format that can't be converted.\n"},
      {"exit 6", "", 3, "old.prj' can't be written.\n"},
      {"exit 7", "", 3, "old.prj' in the old format was only partly converted.\n"},
      {"exit 8", "", 3,
       "tarn: old.prj can't be converted: Unknown error\ntarn: " + hint +
           "ended with the exit code 8.\n"},
      {"kill 9, $$", "", 3, hint + "ended with the exit code 137.\n"},
      {"sleep 3", "Seconds=1", 3,
       hint + "takes longer than 1 s. It continues in the background.\n"},
      {"", "Interpreter=/no/perl", 4, "the program /no/perl, which was not found."},
  };
  for (const auto& each : cases) {
    project.Write("tarn/bin/k418/k418.pl", each.script);
    project.Write("settings/user/profile.ini",
                  std::string("[Corvane\\Tarn\\Import]\n") + each.settings + "\n");
    const auto run = project.Run({"import", "old.prj"});
    EXPECT_EQ(run.code, each.code) << each.script;
    EXPECT_NE(run.err.find(each.said), std::string::npos) << each.script << ": " << run.err;
    EXPECT_EQ(run.out, "") << each.script;
  }
}

// The project of an earlier conversion must not be taken for the result of this one.
TEST(CliImport, AScriptThatWasCutConvertsNothing) {
  OlderProject project;
  const std::string script = project.Read(project.Script());
  project.Out({"import", "old.prj"});
  std::filesystem::create_directories(project.PathOf("tarn/bin/k418"));
  std::filesystem::create_directory_symlink(
      std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/config", project.PathOf("tarn/config"));
  project.environment[0].second = project.PathOf("tarn");
  for (const char* rest : {"use strict;", "# --- What", "binmode STDOUT", "exit $code", "}\n"}) {
    project.Write("tarn/bin/k418/k418.pl", script.substr(0, script.rfind(rest)));
    project.ExpectRefusal({"import", "--yes", "old.prj"}, 3, "ended with the exit code 255");
  }
}

TEST(CliImport, WhatIsNotAnOlderProjectIsReported) {
  CliProject project;
  EXPECT_EQ(project.Run({"import", "gone.prj"}).code, 3);
  EXPECT_EQ(project.Run({"import", "src"}).code, 3);
  EXPECT_EQ(project.Run({"import", "demo.tprj"}).code, 2);
  // Other commands don't start a script.
  project.Write("old.prj", kOlder);
  const auto build = project.Run({"build", "old.prj"});
  EXPECT_EQ(build.code, 3);
  EXPECT_NE(build.err.find("old.prj is not a project file (*.tprj)."), std::string::npos)
      << build.err;
}

}  // namespace
}  // namespace tarn::host
