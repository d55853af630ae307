// Projects that are shared by several people and programs.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>
#include <utility>

#include "hosts/CliProject.h"
#include "platform/files/FileSystem.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

TEST(CliSharing, AnEditWaitsForAnother) {
  CliProject project;
  project.Write("src/d.c", "");
  auto lock = FileSystem::Native().TryLock(project.PathOf("demo.tlock"), LockPurpose::Edit);
  ASSERT_TRUE(lock) << lock.GetError().text;
  project.ExpectRefusal({"add", "--no-wait", "src/d.c"}, 3, "Another program is changing");
  EXPECT_EQ(project.Run({"build"}).code, 0) << "a build changes nothing";
  const auto answer =
      project.RunProgram("/bin/sh", {"-c", "exec \"$0\" add src/d.c 2>&1", TARN_PROGRAM},
                         [&lock](Process&, const std::string& said) {
                           if (Has(said, "Waiting for another program")) lock->reset();
                         });
  EXPECT_TRUE(Has(answer.out, "Waiting for another program")) << answer.out;
  EXPECT_TRUE(Has(answer.out, "\nadded src/d.c\n")) << answer.out;
}

// Grants every user access to the project.
void OpenToAll(const CliProject& project) {
  const fs::path root = fs::path(project.PathOf("..")).lexically_normal();
  fs::permissions(root, fs::perms::all);
  for (const auto& each : fs::recursive_directory_iterator(root)) {
    if (!each.is_symlink()) fs::permissions(each.path(), fs::perms(0666), fs::perm_options::add);
    if (each.is_directory()) fs::permissions(each.path(), fs::perms::all);
  }
}

// Runs the program as a user without special rights, if this process may do that.
CliProject::Answer RunAsOther(CliProject& project, const char* command) {
  if (geteuid() != 0) return project.Run(Words(command));
  std::vector<std::string> words{"--reuid=65534", "--regid=65534", "--clear-groups", TARN_PROGRAM};
  for (std::string& word : Words(command)) words.push_back(std::move(word));
  return project.RunProgram("setpriv", words);
}

TEST(CliSharing, NothingIsChangedWithoutTheLock) {
  CliProject project;
  project.Write("src/d.c", "");
  project.Out({"options", "set", "Compiler.Defines", "X"});
  OpenToAll(project);
  fs::permissions(project.PathOf("demo.tlock"), fs::perms::none);
  const std::string before = project.Read("app.tapp");
  for (const char* command : {"add src/d.c", "undo", "build"}) {
    const auto answer = RunAsOther(project, command);
    EXPECT_EQ(answer.code, 3) << command;
    EXPECT_TRUE(Has(answer.err, "/demo.tlock can't be locked: Permission denied")) << answer.err;
    EXPECT_EQ(project.Read("app.tapp"), before);
  }
}

TEST(CliSharing, AnotherUserLearnsTheReason) {
  const struct {
    const char* name;
    std::function<void(const CliProject&)> prepare;
    const char* command;
    const char* said;
  } rows[] = {
      {"record of another user",
       [](const CliProject& project) {
         fs::permissions(project.PathOf("demo.undo.tstate"), fs::perms(0644));
       },
       "undo", "demo.undo.tstate can't be written, and nothing was changed: Permission denied"},
      {"sticky folder",
       [](const CliProject& project) { fs::permissions(project.PathOf(""), fs::perms(01777)); },
       "rename app.tapp other", "it belongs to another user, and so does its folder"},
      {"folder of another user",
       [](const CliProject& project) { fs::permissions(project.PathOf("src"), fs::perms(0755)); },
       "add --create src/new.c", "src/new.c can't be created:\n"},
  };
  if (geteuid() != 0) GTEST_SKIP() << "only root may act as another user";
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    CliProject project;
    project.Out({"options", "set", "Compiler.Defines", "X"});
    OpenToAll(project);
    row.prepare(project);
    const auto answer = RunAsOther(project, row.command);
    EXPECT_EQ(answer.code, 3) << answer.out;
    EXPECT_TRUE(Has(answer.err, row.said)) << answer.err;
    for (const auto& each : fs::directory_iterator(project.PathOf(""))) {
      EXPECT_FALSE(Has(each.path().filename(), ".tarn-")) << each.path();
    }
  }
}

// Only the added line changes in the project's files.
TEST(CliSharing, OneChangeIsOneLine) {
  const struct {
    std::vector<std::string> words;
    int added, removed;
  } rows[] = {
      {{"add", "src/d.c"}, 1, 0},
      {{"rename", "src/a.c", "other"}, 1, 1},
      {{"remove", "src/b.c"}, 0, 1},
      {{"config", "add", "Debug", "--empty"}, 1, 0},
      {{"config", "select", "Debug"}, 1, 1},
      {{"options", "set", "Compiler.Defines", "X"}, 7, 0},
      {{"options", "reset", "Compiler.Defines"}, 0, 7},
      {{"select", "app"}, 0, 0},
  };
  for (const bool hasLineFeeds : {false, true}) {
    CliProject project;
    project.Write("src/d.c", "");
    project.Out({"options", "set", "-n", "src/a.c", "Compiler.Optimize", "s"});
    for (const char* name : {"demo.tprj", "app.tapp"}) {
      std::string text = project.Read(name);
      if (hasLineFeeds) std::erase(text, '\r');
      project.Write(name, text);
    }
    for (const auto& row : rows) {
      SCOPED_TRACE(row.words[0] + " " + row.words[1]);
      const auto lines = [&project] {
        const std::string text = project.Read("demo.tprj") + "\n" + project.Read("app.tapp");
        std::multiset<std::string> all;
        for (const std::string_view line : Split(text, '\n')) all.emplace(line);
        return all;
      };
      const auto before = lines();
      project.Run({"build"});  // publishes all options, even if it fails
      project.Out(row.words);
      const auto after = lines();
      const auto count = [](const auto& of, const auto& without) {
        std::vector<std::string> own;
        std::ranges::set_difference(of, without, std::back_inserter(own));
        return static_cast<int>(own.size());
      };
      EXPECT_EQ(count(after, before), row.added) << project.Read("app.tapp");
      EXPECT_EQ(count(before, after), row.removed);
      EXPECT_EQ(project.Read("app.tapp").find('\r') == std::string::npos, hasLineFeeds);
    }
  }
}

TEST(CliSharing, AnApplicationIsSavedWhereItWasReadFrom) {
  CliProject project;
  fs::create_directory(project.PathOf("sub"));
  fs::rename(project.PathOf("app.tapp"), project.PathOf("sub/app.tapp"));
  fs::rename(project.PathOf("src"), project.PathOf("sub/src"));
  const std::string text = ReplaceAll(project.Read("demo.tprj"), ".\\app", ".\\sub\\app");
  project.Write("demo.tprj", text);
  project.Write("sub/src/d.c", "");
  EXPECT_EQ(project.Out({"add", "sub/src/d.c"}), "added sub/src/d.c\n");
  EXPECT_FALSE(project.Exists("app.tapp"));
  EXPECT_EQ(project.Read("demo.tprj"), text);
  EXPECT_TRUE(Has(project.Read("sub/app.tapp"), ".\\src\\d.c"));
  EXPECT_EQ(project.Run({"build"}).code, 0);
}

// Two projects in different folders share one application.
TEST(CliSharing, AnApplicationOutsideOfTheFolderIsWrittenOnlyIfTheUserAgrees) {
  CliProject project;
  fs::create_directory(project.PathOf("other"));
  const std::string text = ReplaceAll(project.Read("demo.tprj"), ".\\app", "..\\app");
  project.Write("other/o.tprj", text);
  project.Write("src/d.c", "");
  const std::string before = project.Read("app.tapp");
  project.Out({"build", "other", "--trust"});
  project.ExpectRefusal({"add", "other", "src/d.c"}, 3,
                        "app.tapp can't be saved: it is outside the folder of the project\n"
                        "Use --outside-ok to write it anyway.");
  EXPECT_EQ(project.Read("app.tapp"), before);
  EXPECT_EQ(project.Read("other/o.tprj"), text);
  project.Out({"add", "--outside-ok", "other", "src/d.c"});
  EXPECT_FALSE(project.Exists("other/app.tapp"));
  EXPECT_TRUE(Has(project.Read("app.tapp"), "d.c"));
  project.Out({"options", "set", "Compiler.Defines", "X"});
  EXPECT_TRUE(Has(project.Read("app.tapp"), "Extern=\".\\app.tapp\""));
}

TEST(CliSharing, ANewProjectIsAsTheFirstSaveLeavesIt) {
  CliProject project;
  for (const auto& [how, name] :
       {std::pair("--compiler", "host-gcc"), {"--target", "atmega328p"}}) {
    project.Out({"new", "p", how, name});
    const auto text = [&project] { return project.Read("p/p.tprj") + project.Read("p/p.tapp"); };
    const std::string made = text();
    project.Out({"options", "set", "Compiler.Defines", "X", "p"});
    EXPECT_NE(text(), made);
    project.Out({"options", "reset", "Compiler.Defines", "p"});
    EXPECT_EQ(text(), made);
    EXPECT_FALSE(project.Exists("p/.gitignore"));
    fs::remove_all(project.PathOf("p"));
  }
  fs::create_directory(project.PathOf(".git"));
  const std::string said = project.Out({"new", "p"});
  EXPECT_TRUE(Has(said, "created p/.gitignore\ncreated p/.gitattributes\n")) << said;
}

TEST(CliSharing, VersionControlMayMergeElementsInsteadOfLines) {
  const std::string base =
      "\r\n<Application Header=\"app\" >\r\n\t<C Header=\"a.c\" />\r\n</Application>";
  const auto add = [](const std::string& text, const char* name) {
    std::string more = text;
    more.insert(more.rfind("\r\n</"), "\r\n\t<C Header=\"" + std::string(name) + "\" />");
    return more;
  };
  const struct {
    const char* name;
    std::string base, ours, theirs;
    int code;
    std::vector<const char*> merged, said;
  } rows[] = {
      {"neighbours", base, add(base, "x.c"), add(base, "y.c"), 0, {"a.c", "x.c", "y.c"}, {}},
      {"both rename",
       base,
       ReplaceAll(base, "\"app\"", "\"one\""),
       ReplaceAll(base, "\"app\"", "\"two\""),
       1,
       {"\"one\""},
       {"OURS is kept", "Header"}},
      {"damaged", base, base, "<Application", 3, {"\"app\""}, {"theirs is damaged"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    CliProject project;
    project.Write("base", row.base);
    project.Write("ours", row.ours);
    project.Write("theirs", row.theirs);
    const auto answer = project.Run({"merge-file", "base", "ours", "theirs"});
    EXPECT_EQ(answer.code, row.code) << answer.err;
    for (const char* part : row.merged) EXPECT_TRUE(Has(project.Read("ours"), part)) << part;
    for (const char* part : row.said) EXPECT_TRUE(Has(answer.err, part)) << answer.err;
    EXPECT_EQ(row.said.empty(), answer.err.empty()) << answer.err;
  }
}

}  // namespace
}  // namespace tarn::host
