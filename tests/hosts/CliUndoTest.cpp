// Undo and redo of commands' changes to a project.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "hosts/CliProject.h"
#include "platform/files/FileSystem.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRecord = "demo.undo.tstate";

std::string FilesOf(const CliProject& project) {
  std::string all;
  for (const char* name : {"demo.tprj", "app.tapp", "second.tapp"}) all += project.Read(name);
  return all;
}

void Replace(CliProject& project, const std::string& from, const std::string& to) {
  project.Write("app.tapp", ReplaceAll(project.Read("app.tapp"), from, to));
}

// Each command is undone, redone and undone again, byte for byte; finally the last one remains.
TEST(CliUndo, EveryChangeOfACommandIsTakenBackAndMadeAgain) {
  const struct {
    std::vector<std::string> words;
    const char* label;
  } rows[] = {
      {{"add", "src/d.c", "src/e.c"}, "Add 2 files"},
      {{"add", "src/f.c", "--to", "New", "--create"}, "Add New"},
      {{"rename", "src/a.c", "other"}, "Rename a.c to other"},
      {{"rename", "demo.tprj", "app", "main"}, "Rename app to main"},
      {{"move", "src/d.c", "New"}, "Move d.c"},
      {{"move", "main/src/a.c", "second"}, "Move other"},
      {{"options", "set", "Compiler.Defines", "X"}, "Set Compiler.Defines"},
      {{"options", "set", "-n", "src/b.c", "Compiler.Optimize", "s"}, "Set Compiler.Optimize"},
      {{"options", "reset", "Compiler.Defines"}, "Reset Compiler.Defines"},
      {{"config", "add", "Debug"}, "Add configuration Debug"},
      {{"config", "select", "Debug"}, "Select configuration Debug"},
      {{"select", "second"}, "Select application second"},
      {{"remove", "src/b.c"}, "Remove b.c"},
      {{"remove", "New"}, "Remove New"},
      {{"select", "main"}, "Select application main"},
      {{"remove", "second"}, "Remove second"},
      {{"add", "second.tapp"}, "Add second"},
  };
  CliProject project;
  project.WriteProject({{"app", {"a.c", "b.c"}}, {"second", {"c.c"}}});
  for (const char* name : {"src/d.c", "src/e.c"}) project.Write(name, "");
  // Converts the files to the format of a save, without a change.
  project.Out({"config", "select", "Fast"});
  project.Out({"config", "select", "Standard"});
  project.Out({"config", "select", "Fast", "-a", "second"});
  for (const char* name : {"second", "app"}) project.Out({"select", name});
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    const std::string label = row.label + std::string("\n");
    const std::string before = FilesOf(project);
    project.Out(row.words);
    const std::string after = FilesOf(project);
    EXPECT_EQ(project.Out({"undo"}), "undone: " + label);
    // Undo doesn't restore an application's own file to the state before it was added.
    if (row.words[1] != "second.tapp") {
      EXPECT_EQ(FilesOf(project), before);
    }
    EXPECT_EQ(project.Out({"redo", "demo.tprj"}), "redone: " + label);
    EXPECT_EQ(FilesOf(project), after);
  }
  project.ExpectRefusal({"redo"}, 2, "There is no change to redo.");
  const std::string before = FilesOf(project);
  EXPECT_EQ(project.Run({"undo", "-q"}).out, "");
  const std::string json = project.Out({"undo", "--json"});
  for (const char* part : {"\"undone: Remove second\"", "\"undo\": \"Select application main\"",
                           "\"redo\": \"Remove second\"", "\"demo.tprj\""}) {
    EXPECT_TRUE(Has(json, part)) << json;
  }
  project.Out({"redo"});
  project.Out({"redo"});
  EXPECT_EQ(FilesOf(project), before);
  EXPECT_TRUE(project.Exists("src/f.c"));
}

// The change may concern another file, which could then no longer fit the project.
TEST(CliUndo, NothingIsChangedIfTheProjectFileCanNotBeRead) {
  CliProject project;
  project.Out({"options", "set", "Compiler.Defines", "X"});
  for (const char* way : {"undo", "redo"}) {
    const std::string before = FilesOf(project);
    fs::rename(project.PathOf("demo.tprj"), project.PathOf("kept"));
    ASSERT_EQ(mkfifo(project.PathOf("demo.tprj").c_str(), 0666), 0);
    project.ExpectRefusal({way}, 3, "/demo.tprj can't be read: not a regular file.");
    fs::rename(project.PathOf("kept"), project.PathOf("demo.tprj"));
    EXPECT_EQ(FilesOf(project), before) << way;
    project.Out({way});
  }
}

// The project still names it after its removal, while a different one is active.
TEST(CliUndo, AnActiveApplicationComesBackAsTheActiveOne) {
  CliProject project;
  project.WriteProject({{"app", {"a.c", "b.c"}}, {"second", {"c.c"}}});
  project.Out({"select", "second"});
  project.Out({"remove", "second"});
  for (const char* way : {"undo", "redo", "undo"}) {
    project.Out({way});
    const bool isBack = way == std::string("undo");
    EXPECT_EQ(Has(project.Out({"tree"}), "second  [Standard]  (active)"), isBack);
    EXPECT_EQ(Has(project.Out({"tree"}), "app  [Standard]  (active)"), !isBack);
  }
}

// An application's content exists nowhere else once it is removed from the project.
TEST(CliUndo, AnApplicationWhoseFileWasDeletedComesBackWhole) {
  const struct {
    std::vector<std::string> words;
    const char* way;
    bool hasOthersChange;
  } rows[] = {{{"remove", "second"}, "undo", false},
              {{"remove", "second"}, "undo", true},
              {{"add", "second.tapp"}, "redo", false},
              {{"add", "second.tapp"}, "redo", true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.words[0] + (row.hasOthersChange ? ", with a change of others" : ""));
    CliProject project;
    project.WriteProject({{"app", {"a.c"}}, {"second", {"c.c"}}});
    project.Out({"config", "select", "Fast", "-a", "second"});  // gives it the format of a save
    if (row.way == std::string("redo")) project.Out({"remove", "second"});
    project.Out(row.words);
    if (row.way == std::string("redo")) project.Out({"undo"});
    const std::string before = project.Read("second.tapp");
    fs::remove(project.PathOf("second.tapp"));
    if (row.hasOthersChange) {
      project.Write("demo.tprj",
                    ReplaceAll(project.Read("demo.tprj"), "<Project ", "<Project Note=\"1\" "));
    }
    project.Out({row.way});
    EXPECT_EQ(project.Read("second.tapp"), before);
    EXPECT_TRUE(Has(project.Out({"tree"}), "c.c"));
    EXPECT_EQ(Has(project.Read("demo.tprj"), "Note"), row.hasOthersChange);
  }
}

TEST(CliUndo, AnApplicationWhoseFolderWasRemovedComesBack) {
  CliProject project;
  fs::create_directory(project.PathOf("lib"));
  project.Write("lib/lib.tapp",
                "\n<Application Header=\"lib\" Extern=\".\\lib\\lib.tapp\" "
                "Path=\".\\lib\\lib.tapp\" />");
  project.Out({"add", "lib/lib.tapp"});
  project.Out({"remove", "lib"});
  const std::string before = project.Read("lib/lib.tapp");
  fs::remove_all(project.PathOf("lib"));
  project.Out({"undo"});
  EXPECT_EQ(project.Read("lib/lib.tapp"), before);
  EXPECT_TRUE(Has(project.Out({"tree"}), "lib"));
}

TEST(CliUndo, WhatOthersWroteSinceStaysOrNothingIsDone) {
  const struct {
    const char* name;
    std::vector<std::string> words;
    const char *from, *to;  // change by another program
    const char* said;       // error; empty: undo succeeds
  } rows[] = {
      {"another node", {"rename", "src/a.c", "x.c"}, "\"b.c\"", "\"y.c\"", ""},
      {"a node in the same group", {"remove", "src/a.c"}, "\"b.c\"", "\"y.c\"", ""},
      {"the same label", {"rename", "src/a.c", "x.c"}, "\"x.c\"", "\"z.c\"", "Sources/a.c has"},
      {"a new node that has changed",
       {"add", "src/d.c"},
       "Header=\"d.c\"",
       "Header=\"d.c\" Note=\"1\"",
       "d.c has changed since"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    CliProject project;
    project.Write("src/d.c", "");
    project.Out(row.words);
    Replace(project, row.from, row.to);
    const std::string present = FilesOf(project);
    const auto answer = project.Run({"undo"});
    const bool isUndone = row.said[0] == '\0';
    EXPECT_EQ(answer.code, isUndone ? 0 : 3) << answer.err;
    EXPECT_TRUE(Has(answer.err, row.said)) << answer.err;
    EXPECT_EQ(FilesOf(project) == present, !isUndone);
    EXPECT_TRUE(Has(project.Read("app.tapp"), row.to));
    EXPECT_TRUE(!isUndone || Has(project.Read("app.tapp"), "\"a.c\""));
  }
}

TEST(CliUndo, OnlyCommandsThatChangeAProjectTouchTheRecord) {
  CliProject project;
  project.Write("src/d.c", "");
  project.ExpectRefusal({"undo"}, 2, "There is no change made by a command to undo.");
  project.ExpectRefusal({"remove", "nothing"}, 2, "No file, group or application");
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"tree"}, {"status"}, {"build"}, {"check"}, {"options", "list"}}) {
    project.Run(words);
    EXPECT_FALSE(project.Exists(kRecord)) << words[0];
  }
  project.Out({"add", "src/d.c"});
  const std::string record = project.Read(kRecord);
  project.ExpectRefusal({"add", "src/gone.c"}, 2, "src/gone.c does not exist.");
  project.Out({"add", "src/d.c"});  // already listed
  project.Out({"options", "set", "Target.Toolchain", "host-gcc"});
  EXPECT_EQ(project.Read(kRecord), record);
  // An ignore rule for the state file covers the record too.
  fs::create_directory(project.PathOf(".git"));
  project.Out({"new", "p"});
  EXPECT_TRUE(Has(project.Read("p/.gitignore"), "\n*.tstate\n"));
}

TEST(CliUndo, AnEditDoesNotFailForItsRecord) {
  CliProject project;
  project.Write("src/d.c", "");
  fs::create_directory(project.PathOf(kRecord));
  const auto answer = project.Run({"add", "src/d.c"});
  EXPECT_EQ(answer.code, 0);
  EXPECT_EQ(answer.out, "added src/d.c\n");
  EXPECT_TRUE(
      Has(answer.err, "The data for `tarn undo` can't be written: " + project.PathOf(kRecord)))
      << answer.err;
  fs::remove(project.PathOf(kRecord));
  project.Write(kRecord, "Tarn undo 2\n1\n1 0\n");
  project.ExpectRefusal({"undo"}, 3,
                        "changes " + project.PathOf(kRecord) + " can't be used: it is damaged.");
  const std::string said = project.Run({"remove", "src/d.c"}).err;
  EXPECT_TRUE(Has(said, "The changes before this one can't be undone: " + project.PathOf(kRecord)));
  EXPECT_EQ(project.Out({"undo"}), "undone: Remove d.c\n");
}

// Otherwise `tarn undo` would undo the change before the last one.
TEST(CliUndo, NothingIsUndoneByARecordThatCanNotBeWritten) {
  CliProject project;
  for (const char* name : {"src/d.c", "src/e.c"}) project.Write(name, "");
  project.Out({"add", "src/d.c"});
  fs::permissions(project.PathOf(kRecord), fs::perms::owner_read);
  EXPECT_TRUE(
      Has(project.Run({"add", "src/e.c"}).err, "The data for `tarn undo` can't be written"));
  const std::string before = FilesOf(project);
  project.ExpectRefusal({"undo"}, 3,
                        std::string(kRecord) +
                            " can't be written, and nothing was changed: the file is "
                            "read-only.");
  EXPECT_EQ(FilesOf(project), before);
}

TEST(CliUndo, AStepThatSomebodyTookBackByHandIsPassedOver) {
  CliProject project;
  project.Out({"rename", "src/a.c", "x.c"});
  project.Out({"rename", "src/b.c", "y.c"});
  Replace(project, "\"y.c\"", "\"b.c\"");
  const std::string present = FilesOf(project);
  EXPECT_EQ(project.Out({"undo"}), "\"Rename b.c to y.c\" is already undone\n");
  EXPECT_EQ(FilesOf(project), present);
  EXPECT_EQ(project.Out({"undo"}), "undone: Rename a.c to x.c\n");
}

// In this state the project names a missing file and can't be opened.
TEST(CliUndo, ARelocationIsTakenBackAndMadeAgain) {
  CliProject project;
  project.Out({"rename", "src/a.c", "x.c"});
  const std::string before = FilesOf(project);
  fs::create_directories(project.PathOf("apps"));
  fs::rename(project.PathOf("app.tapp"), project.PathOf("apps/app.tapp"));
  project.Out({"relocate"});
  const std::string after = project.Read("demo.tprj") + project.Read("apps/app.tapp");
  EXPECT_EQ(project.Out({"undo"}), "undone: Relocate 4 paths\n");
  EXPECT_EQ(project.Out({"redo"}), "redone: Relocate 4 paths\n");
  EXPECT_EQ(project.Read("demo.tprj") + project.Read("apps/app.tapp"), after);
  project.Out({"undo"});
  fs::rename(project.PathOf("apps/app.tapp"), project.PathOf("app.tapp"));
  EXPECT_EQ(FilesOf(project), before);
  EXPECT_EQ(project.Out({"undo"}), "undone: Rename a.c to x.c\n");
}

TEST(CliUndo, IsAChangeLikeOthers) {
  CliProject project;
  project.Write("src/d.c", "");
  project.Out({"add", "src/d.c"});
  const std::string text = project.Read("app.tapp");
  {
    auto lock = FileSystem::Native().TryLock(project.PathOf("demo.tlock"), LockPurpose::Edit);
    ASSERT_TRUE(lock) << lock.GetError().text;
    project.ExpectRefusal({"undo", "--no-wait"}, 3, "Another program is changing");
  }
  project.Write("app.tapp", text + "stray");
  project.ExpectRefusal({"undo"}, 3, "Repair the files, or use --damaged-ok");
  EXPECT_EQ(project.Read("app.tapp"), text + "stray");
  project.Out({"undo", "--damaged-ok"});
  EXPECT_EQ(project.Read("app.tapp.bak"), text + "stray");
  EXPECT_FALSE(Has(project.Read("app.tapp"), "d.c"));
}

}  // namespace
}  // namespace tarn::host
