#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

// Returns the tree without the first line, which names the project.
std::string TreeOf(CliProject& project) {
  const std::string tree = project.Run({"tree", "demo.tprj"}).out;
  return tree.substr(tree.find('\n') + 1);
}

constexpr const char* kApp = "  app  [Standard]  (active)  app.tapp\n";
constexpr const char* kSources =
    "    Sources\n      a.c  src/a.c\n      b.c  src/b.c\n      c.c  src/c.c\n";

TEST(CliEdit, CommandsChangeTheTreeOnDisk) {
  const std::string app = kApp;
  const std::string all = app + kSources;
  const struct {
    const char* name;
    std::vector<std::vector<std::string>> commands;  // all succeed
    std::string out;                                 // output of the last one
    std::string tree;                                // afterwards, reloaded from disk
  } cases[] = {
      {"add to the application",
       {{"add", "demo.tprj", "src/d.c"}},
       "added src/d.c\n",
       all + "    d.c  src/d.c\n"},
      {"add without a project to a group",
       {{"add", "src/d.c", "--to", "Sources"}},
       "added src/d.c\n",
       all + "      d.c  src/d.c\n"},
      {"add twice is added once",
       {{"add", ".", "src/d.c"}, {"add", ".", "./src/../src/d.c"}},
       "",
       all + "    d.c  src/d.c\n"},
      {"add makes file and group",
       {{"add", "src/e.c", "src/d.c", "--to", "New one", "--create"}},
       "created the group New one\nadded src/e.c\nadded src/d.c\n",
       all + "    New one\n      e.c  src/e.c\n      d.c  src/d.c\n"},
      {"remove by path and by label",
       {{"remove", "src/a.c", "c.c"}},
       "removed src/a.c\nremoved c.c\n",
       app + "    Sources\n      b.c  src/b.c\n"},
      {"move out of a group and in front of a file",
       {{"move", ".", "src/c.c", "app"}, {"move", "src/b.c", "src/c.c"}},
       "moved src/b.c to src/c.c\n",
       app + "    Sources\n      a.c  src/a.c\n    b.c  src/b.c\n    c.c  src/c.c\n"},
      {"rename a group",
       {{"rename", "Sources", "Code"}},
       "renamed Sources to Code\n",
       app + "    Code\n      a.c  src/a.c\n      b.c  src/b.c\n      c.c  src/c.c\n"},
      {"rename the active application",
       {{"rename", "demo.tprj", "app", "main"}},
       "renamed app to main\n",
       std::string("  main  [Standard]  (active)  app.tapp\n") + kSources},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    CliProject project;
    project.Write("src/d.c", "int d;\n");
    std::string last;
    for (const auto& command : each.commands) last = project.Out(command);
    EXPECT_EQ(last, each.out);
    EXPECT_EQ(TreeOf(project), each.tree);
  }
}

// The project identifies the active application by its label.
TEST(CliEdit, OfTwoApplicationsWithOneLabelNoneIsSelected) {
  CliProject project;
  project.WriteProject({{"app", {"a.c"}}, {"second", {"b.c"}}});
  project.Write("src/app.tapp", "<Application Header=\"app\" />");
  project.Out({"add", "src/app.tapp"});
  project.ExpectRefusal({"select", "app"}, 2, "`tarn rename app.tapp NAME`");
  project.ExpectRefusal({"rename", "app.tapp", "a&quot;"}, 2, "\"a&quot;\" is not a valid name");
  project.Out({"rename", "app.tapp", "first"});
  EXPECT_EQ(project.Out({"select", "app"}), "selected app\n");
}

TEST(CliEdit, SelectPutsAnotherApplicationInForceAndAnAddedOneIsActive) {
  CliProject project;
  project.WriteProject({{"app", {"a.c"}}, {"second", {"b.c"}}});
  EXPECT_EQ(project.Run({"select", "SECOND"}).out, "selected second\n");
  EXPECT_TRUE(Has(TreeOf(project), "second  [Standard]  (active)"));
  EXPECT_EQ(project.Run({"remove", "second"}).code, 0);
  EXPECT_FALSE(Has(TreeOf(project), "second"));
  EXPECT_TRUE(project.Exists("second.tapp"));
  EXPECT_EQ(project.Run({"add", "second.tapp"}).out, "added second.tapp\n");
  const std::string tree = TreeOf(project);
  EXPECT_TRUE(Has(tree, "second  [Standard]  (active)  second.tapp\n")) << tree;
  EXPECT_TRUE(Has(tree, "      b.c  src/b.c\n")) << tree;
}

// Both applications have a group with the same label, which contains the same file.
TEST(CliEdit, ANodeThatBothHaveIsNamedByItsApplication) {
  const std::string one = "  one  [Standard]  (active)  one.tapp\n";
  const std::string two = "  two  [Standard]  two.tapp\n";
  const std::string sources = "    Sources\n";
  const std::string a = "      a.c  src/a.c\n";
  const std::string b = "      b.c  src/b.c\n";
  const std::string d = "      d.c  src/d.c\n";
  const struct {
    std::vector<std::string> words;
    std::string tree;
  } cases[] = {
      {{"remove", "src/a.c", "-a", "TWO"}, one + sources + a + b + two + sources},
      {{"remove", "one/src/a.c"}, one + sources + b + two + sources + a},
      {{"remove", "Two/a.c"}, one + sources + a + b + two + sources},
      {{"remove", "two/Sources"}, one + sources + a + b + two},
      {{"add", "src/d.c", "--to", "two/Sources"}, one + sources + a + b + two + sources + a + d},
      {{"add", "src/d.c", "--to", "Sources", "-a", "two"},
       one + sources + a + b + two + sources + a + d},
      {{"move", "src/b.c", "two/sources"}, one + sources + a + two + sources + a + b},
      {{"move", "src/a.c", "one", "-a", "one"},
       one + sources + b + "    a.c  src/a.c\n" + two + sources + a},
      {{"move", "one/src/a.c", "two"},
       one + sources + b + two + sources + a + "    a.c  src/a.c\n"},
      {{"move", "src/a.c", "two", "-a", "one"},
       one + sources + b + two + sources + a + "    a.c  src/a.c\n"},
      {{"rename", "Sources", "Code", "--app", "two"},
       one + sources + a + b + two + "    Code\n" + a},
  };
  for (const auto& each : cases) {
    CliProject project;
    project.WriteProject({{"one", {"a.c", "b.c"}}, {"two", {"a.c"}}});
    // The project's label is ignored if an application has the same one.
    std::string file = project.Read("demo.tprj");
    project.Write("demo.tprj", file.replace(file.find("Project 'demo'"), 14, "two"));
    project.Write("src/d.c", "int d;\n");
    const std::string out = project.Out(each.words);
    EXPECT_EQ(TreeOf(project), each.tree) << out;
  }
}

TEST(CliEdit, WhatCanNotBeDoneIsToldAndNothingIsWritten) {
  CliProject project;
  project.WriteProject({{"app", {"a.c", "b.c"}}, {"second", {"a.c"}}});
  project.Write("src/d.c", "int d;\n");
  ASSERT_EQ(mkfifo(project.PathOf("src/pipe.c").c_str(), 0600), 0);
  const std::string before = project.Read("demo.tprj") + project.Read("app.tapp");
  const struct {
    std::vector<std::string> words;
    const char* said;
  } cases[] = {
      {{"add"}, "Usage: tarn add [PROJECT] FILE..."},
      {{"move", "src/b.c"}, "Usage: tarn move [PROJECT] NODE... TARGET"},
      {{"rename", "a", "b", "c", "d"}, "tarn rename --help"},
      {{"add", "src/gone.c"}, "Use --create to create an empty one."},
      {{"add", "demo.tprj", "src"}, "src is a folder."},
      {{"add", "src/pipe.c"}, "src/pipe.c can't be added: "},
      {{"add", "src/d.c", "--to", "Nowhere"}, "No file, group or application is called"},
      {{"add", "src/d.c", "src/gone.c"}, "src/gone.c does not exist."},
      {{"add", "src/b.c", "--to", "app.tapp"}, "src/b.c is in \"Sources\" already."},
      {{"remove", "src/b.c", "src/d.c"}, "No file, group or application is called \"src/d.c\""},
      {{"remove", "src/a.c"}, "in this project several times. APP/src/a.c is the one in an"},
      {{"remove", "Sources"}, "several times"},
      {{"remove", "src/b.c", "-a", "second"}, "\"src/b.c\" in the application second."},
      {{"move", "src/b.c", "Sources"}, "several times"},
      {{"add", "src/d.c", "--to", "Sources"}, "several times"},
      {{"options", "set", "-n", "src/a.c", "Compiler.Defines", "X"}, "several times"},
      {{"remove", "demo.tprj", "demo.tprj"}, "can't be removed"},
      {{"move", "app", "second"}, "can't contain \"app\""},
      {{"move", "app", "src/b.c"}, "\"src/b.c\" was not found outside of \"app\""},
      {{"rename", "src/b.c", " "}, "not a valid name"},
      {{"rename", "app", "Second"}, "The application \"second\" already exists."},
      {{"select", "secnd"}, "Did you mean \"second\"?"},
  };
  for (const auto& each : cases) project.ExpectRefusal(each.words, 2, each.said);
  EXPECT_EQ(project.Read("demo.tprj") + project.Read("app.tapp"), before);
}

TEST(CliEdit, AnAddThatFailsRemovesTheFilesThatItHasMade) {
  CliProject project;
  const std::string made = project.PathOf("src/x.c");
  project.ExpectRefusal({"add", "src/x.c", "src", "--create"}, 2, "src is a folder.");
  EXPECT_FALSE(std::filesystem::exists(made));
  ASSERT_EQ(chmod(project.PathOf("app.tapp").c_str(), 0444), 0);
  const auto unsaved = project.Run({"add", "src/x.c", "--create"});
  EXPECT_EQ(unsaved.code, 3) << unsaved.out << unsaved.err;
  EXPECT_FALSE(std::filesystem::exists(made));
  ASSERT_EQ(chmod(project.PathOf("app.tapp").c_str(), 0644), 0);
  EXPECT_EQ(project.Run({"add", "src/x.c", "--create"}).code, 0);
  EXPECT_TRUE(std::filesystem::exists(made));
}

TEST(CliEdit, AnAddCreatesTheFoldersOfANewFileOrNothing) {
  CliProject project;
  project.ExpectRefusal({"add", "drivers/spi/x.c", "src", "--create"}, 2, "src is a folder.");
  EXPECT_FALSE(project.Exists("drivers"));
  std::filesystem::create_directory(project.PathOf("drivers"));
  project.ExpectRefusal({"add", "drivers/spi/x.c", "src", "--create"}, 2, "src is a folder.");
  EXPECT_TRUE(project.Exists("drivers"));
  EXPECT_FALSE(project.Exists("drivers/spi"));
  EXPECT_EQ(project.Out({"add", "drivers/spi/x.c", "--create"}), "added drivers/spi/x.c\n");
  EXPECT_TRUE(project.Exists("drivers/spi/x.c"));
  EXPECT_EQ(project.Run({"check"}).code, 0);
}

}  // namespace
}  // namespace tarn::host
