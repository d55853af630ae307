// Files that can't be read or written: the error names the file and the system's reason.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

enum class Instead { Folder, Loop, LinkToNothing, Pipe };

// Replaces or creates a file.
void Put(Instead what, const std::string& path) {
  fs::remove_all(path);
  fs::create_directories(fs::path(path).parent_path());
  switch (what) {
    case Instead::Folder:
      fs::create_directory(path);
      break;
    case Instead::Loop:
      fs::create_symlink(fs::path(path).filename(), path);
      break;
    case Instead::LinkToNothing:
      fs::create_symlink("/none/at/all", path);
      break;
    case Instead::Pipe:
      ASSERT_EQ(mkfifo(path.c_str(), 0666), 0);
      break;
  }
}

TEST(CliFiles, FileAndReasonAreReported) {
  const std::string notAFile = "not a regular file";
  const std::string loop = "Too many levels of symbolic links";
  const std::string link = "it is a symbolic link, which is not followed";
  const struct {
    const char* path;
    Instead what;
    std::vector<std::string> words;
    int code;
    std::vector<std::string> said;
  } rows[] = {
      {"demo.tprj", Instead::Loop, {"tree", "demo.tprj"}, 3, {"/demo.tprj can't be read: ", loop}},
      {"demo.tprj",
       Instead::LinkToNothing,
       {"tree", "demo.tprj"},
       3,
       {"/demo.tprj can't be read: a link to a missing file"}},
      {"demo.tprj", Instead::Pipe, {"tree"}, 3, {"/demo.tprj' can't be opened", notAFile}},
      {"app.tapp", Instead::Folder, {"tree"}, 3, {"/app.tapp' can't be opened", notAFile}},
      {"app.tapp", Instead::Loop, {"build"}, 3, {"/app.tapp' can't be opened", loop}},
      {"app.tapp",
       Instead::LinkToNothing,
       {"build"},
       3,
       {"/app.tapp' can't be opened", "a link to a missing file"}},
      {"demo.tlock",
       Instead::Folder,
       {"options", "set", "Compiler.Defines", "X"},
       3,
       {"/demo.tlock can't be locked: "}},
      {"demo.tlock", Instead::Pipe, {"build"}, 3, {"/demo.tlock can't be locked: ", notAFile}},
      {"src/c.c",
       Instead::Pipe,
       {"build"},
       1,
       {"/src/c.c can't be read: " + notAFile + "; the tool is not run"}},
      {"src/x.a", Instead::Pipe, {"build"}, 1, {"/src/x.a can't be read: " + notAFile}},
      {"src/c.c", Instead::Pipe, {"add", "src/c.c"}, 2, {"/src/c.c can't be added: " + notAFile}},
      {"demo.tstate", Instead::Folder, {"build"}, 3, {"/demo.tstate: ", notAFile}},
      {"demo.tlog", Instead::Folder, {"build"}, 3, {"/demo.tlog: ", notAFile}},
      {"demo.tlog", Instead::Loop, {"log"}, 3, {"/demo.tlog can't be read: ", link}},
      {"demo.tlog", Instead::LinkToNothing, {"log", "-f"}, 3, {"/demo.tlog can't be read: ", link}},
      {"demo.tstate", Instead::Loop, {"status"}, 0, {"/demo.tstate can't be read: ", link}},
      {"demo.tstate", Instead::Folder, {"status"}, 0, {"/demo.tstate can't be read: ", notAFile}},
      {"demo.undo.tstate", Instead::Loop, {"undo"}, 3, {"/demo.undo.tstate can't be used: ", link}},
      {"demo.undo.tstate",
       Instead::Pipe,
       {"undo"},
       3,
       {"/demo.undo.tstate can't be used: ", notAFile}},
      {"settings/state/trusted",
       Instead::Pipe,
       {"trust", "--list"},
       3,
       {"/settings/state/trusted: "}},
      {"demo.tlog", Instead::Folder, {"report"}, 3, {"/demo.tlog can't be read: ", notAFile}},
      {"demo.tlog",
       Instead::Pipe,
       {"export", "sarif"},
       3,
       {"/demo.tlog can't be read: ", notAFile}},
      {"compile_commands.json",
       Instead::Folder,
       {"export", "compile-commands"},
       3,
       {"/compile_commands.json can't be written: ", notAFile}},
      {"app-Globals.Standard.xml", Instead::Loop, {"globals"}, 3, {"can't be read: ", loop}},
      {"demo.tlock",
       Instead::Pipe,
       {"run", "build.lua"},
       1,
       {"build.lua:1: ", "/demo.tlock can't be locked: ", notAFile}},
      {"x.lua", Instead::Folder, {"run", "x.lua"}, 2, {"/x.lua can't be read: ", notAFile}},
      {"old.prj", Instead::Loop, {"import", "old.prj"}, 3, {"/old.prj can't be read: ", loop}},
      {"build", Instead::Loop, {"build"}, 1, {"/build/Standard/", loop}},
      {"share/targets/avr.xml", Instead::Loop, {"targets"}, 3, {"/share/targets/avr.xml: ", loop}},
      {"share/config/message.xslt",
       Instead::Folder,
       {"tree"},
       3,
       {"/share/config/message.xslt: ", notAFile}},
      {"share/config/projectmanager.config",
       Instead::Loop,
       {"tree"},
       3,
       {"/share/config/projectmanager.config: ", loop}},
      {"share/config/options/common.options",
       Instead::Pipe,
       {"tree"},
       3,
       {"/share/config/options/common.options: ", notAFile}},
      {"share/config/tools/host-gcc.tools", Instead::Loop, {"tree"}, 3, {"host-gcc.tools: ", loop}},
      {"settings", Instead::LinkToNothing, {"tree"}, 0, {"a.c"}},
      {"settings", Instead::LinkToNothing, {"register"}, 3, {"/settings"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.path) + ": " + row.words[0]);
    CliProject project;
    project.Trust();
    if (std::string(row.path).starts_with("share")) {
      fs::copy(TARN_SHARE, project.PathOf("share"), fs::copy_options::recursive);
      project.Point("TARN_ROOT", "share");
    }
    if (std::string(row.path).starts_with("settings")) project.Point("TARN_SETTINGS", "settings");
    if (row.path == std::string("src/x.a")) project.Out({"add", "--create", row.path});
    project.Write("build.lua", "tarn.Command(0x8112)");
    Put(row.what, project.PathOf(row.path));
    const auto answer = project.Run(row.words);
    EXPECT_EQ(answer.code, row.code) << answer.out << answer.err;
    for (const std::string& part : row.said) {
      EXPECT_TRUE(Has(answer.out + answer.err, part)) << part << "\n" << answer.out << answer.err;
    }
  }
}

// A tool would wait for another program to write to the pipe.
TEST(CliFiles, NoToolReadsAPipe) {
  const struct {
    const char* pipe;
    std::vector<std::string> options;
    bool isFirst = false;  // the first build
  } rows[] = {
      {"chip.ld", {"Linker.Script", "chip.ld"}},
      {"chip.ld", {"--", "Linker.Extra", "-T chip.ld"}},
      {"more.args", {"Linker.Extra", "@more.args"}},
      {"more.args", {"C.Compiler.Extra", "@more.args"}},
      {"src/a.h", {}},
      {"src/a.h", {}, true},
      {"inc/deep.h", {"Directories.Include", "inc"}, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.pipe + std::string(" ") + (row.options.empty() ? "" : row.options.back()));
    CliProject project;
    project.Trust();
    if (!row.isFirst) project.Out({"build"});
    if (row.isFirst) project.Write("src/a.h", "#include <deep.h>\nint a(void);\n");
    fs::create_directory(project.PathOf("inc"));
    if (!row.options.empty()) {
      std::vector<std::string> words{"options", "set"};
      words.insert(words.end(), row.options.begin(), row.options.end());
      project.Out(words);
    }
    Put(Instead::Pipe, project.PathOf(row.pipe));
    const auto answer = project.RunProgram("timeout", {"20", TARN_PROGRAM, "build"});
    EXPECT_EQ(answer.code, 1);
    EXPECT_TRUE(Has(answer.out, std::string(row.pipe) + " can't be read: not a regular file; " +
                                    "the tool is not run"))
        << answer.out << answer.err;
  }
}

TEST(CliFiles, ALogThatLacksMessagesIsReported) {
  CliProject project;
  project.Out({"build"});
  const std::string log = project.Read("demo.tlog");
  const std::string path = project.PathOf("demo.tlog");
  const std::pair<std::string, std::string> rows[] = {
      {"", "The log " + path + " is empty."},
      {log.substr(0, log.size() / 2), "The log is damaged and may lack messages: " + path + ":"},
      {log, ""},
  };
  for (const auto& [text, said] : rows) {
    project.Write("demo.tlog", text);
    for (const char* command : {"log", "report"}) {
      const auto answer = project.Run({command});
      EXPECT_EQ(answer.code, 0) << answer.err;
      EXPECT_TRUE(Has(answer.err, said)) << answer.err;
      EXPECT_EQ(answer.err.empty(), said.empty()) << answer.err;
    }
  }
}

TEST(CliFiles, OnlyAChangeOfAReadOnlyProjectSaysThatItIsReadOnly) {
  CliProject project;
  ASSERT_EQ(chmod(project.PathOf("app.tapp").c_str(), 0444), 0);
  for (const char* command : {"tree", "status", "build", "check"}) {
    EXPECT_EQ(project.Run({command}).err, "") << command;
  }
  EXPECT_TRUE(Has(project.Run({"rename", "app.tapp", "other"}).err, "is read-only"));
}

TEST(CliFiles, AByteOrderMarkIsNoDamageAndIsKeptInACopy) {
  CliProject project;
  const std::string marked = "\xEF\xBB\xBF" + project.Read("app.tapp");
  project.Write("app.tapp", marked);
  EXPECT_EQ(project.Run({"build"}).err, "");
  project.Out({"options", "set", "Compiler.Defines", "X"});
  EXPECT_EQ(project.Read("app.tapp.bak"), marked);
  EXPECT_TRUE(Has(project.Read("app.tapp"), "Value=\"X\""));
}

TEST(CliFiles, AChangeThatCanNotBeSavedIsToldAndChangesNothing) {
  CliProject project;
  const std::string before = project.Read("app.tapp");
  ASSERT_EQ(chmod(project.PathOf("app.tapp").c_str(), 0444), 0);
  const auto answer = project.Run({"options", "set", "Compiler.Defines", "X"});
  EXPECT_EQ(answer.code, 3);
  const std::string path = project.PathOf("app.tapp");
  EXPECT_TRUE(Has(answer.err, path + " can't be saved: the file is read-only\n")) << answer.err;
  // The label of an application is stored in both files of the project.
  const std::string label = project.Run({"rename", "app.tapp", "other"}).err;
  EXPECT_TRUE(Has(label, "demo.tprj can't be saved: " + path + ": the file is read-only")) << label;
  EXPECT_TRUE(Has(project.Read("demo.tprj"), "ActiveApp=\"app\""));
  EXPECT_FALSE(project.Exists("app.tapp.unsaved"));
  EXPECT_EQ(project.Read("app.tapp"), before);
  project.ExpectRefusal({"add", "--create", std::string(300, 'n') + ".c"}, 2, "File name too long");
}

}  // namespace
}  // namespace tarn::host
