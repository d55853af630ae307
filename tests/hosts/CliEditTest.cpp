#include <gtest/gtest.h>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// The tree without its first line, which names the project.
std::string TreeOf(CliProject& project) {
  const std::string tree = project.Run({"tree", "demo.tprj"}).out;
  return tree.substr(tree.find('\n') + 1);
}

constexpr const char* kApp = "  app  [Standard]  (active)  app.tapp\n";
constexpr const char* kSources =
    "    Sources\n      a.c  src/a.c\n      b.c  src/b.c\n      c.c  src/c.c\n";

struct EditCase {
  const char* name;
  std::vector<std::vector<std::string>> commands;  // all end well
  std::string out;                                 // of the last one
  std::string tree;                                // afterwards, read anew from disk
};

// The name of a test in lists of them.
void PrintTo(const EditCase& each, std::ostream* out) {
  *out << each.name;
}

class CliEdit : public ::testing::TestWithParam<EditCase> {};

TEST_P(CliEdit, ChangesTheTreeOnDisk) {
  CliProject project;
  project.Write("src/d.c", "int d;\n");
  CliProject::Answer last;
  for (const auto& command : GetParam().commands) {
    last = project.Run(command);
    ASSERT_EQ(last.code, 0) << last.out << last.err;
  }
  EXPECT_EQ(last.out, GetParam().out) << last.err;
  EXPECT_EQ(TreeOf(project), GetParam().tree);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, CliEdit,
    ::testing::Values(
        EditCase{"AddToTheApplication",
                 {{"add", "demo.tprj", "src/d.c"}},
                 "added src/d.c\n",
                 std::string(kApp) + kSources + "    d.c  src/d.c\n"},
        EditCase{"AddWithoutAProjectToAGroup",
                 {{"add", "src/d.c", "--to", "Sources"}},
                 "added src/d.c\n",
                 std::string(kApp) + kSources + "      d.c  src/d.c\n"},
        EditCase{"AddTwiceIsAddedOnce",
                 {{"add", ".", "src/d.c"}, {"add", ".", "./src/../src/d.c"}},
                 "",
                 std::string(kApp) + kSources + "    d.c  src/d.c\n"},
        EditCase{
            "AddMakesFileAndGroup",
            {{"add", "src/e.c", "src/d.c", "--to", "New one", "--create"}},
            "made the group New one\nadded src/e.c\nadded src/d.c\n",
            std::string(kApp) + kSources + "    New one\n      e.c  src/e.c\n      d.c  src/d.c\n"},
        EditCase{"RemoveByPathAndByLabel",
                 {{"remove", "src/a.c", "c.c"}},
                 "removed src/a.c\nremoved c.c\n",
                 std::string(kApp) + "    Sources\n      b.c  src/b.c\n"},
        EditCase{"MoveOutOfAGroupAndInFrontOfAFile",
                 {{"move", ".", "src/c.c", "app"}, {"move", "src/b.c", "src/c.c"}},
                 "moved src/b.c to src/c.c\n",
                 std::string(kApp) +
                     "    Sources\n      a.c  src/a.c\n    b.c  src/b.c\n    c.c  src/c.c\n"},
        EditCase{"RenameAGroup",
                 {{"rename", "Sources", "Code"}},
                 "renamed Sources to Code\n",
                 std::string(kApp) +
                     "    Code\n      a.c  src/a.c\n      b.c  src/b.c\n      c.c  src/c.c\n"},
        EditCase{"RenameTheActiveApplication",
                 {{"rename", "demo.tprj", "app", "main"}},
                 "renamed app to main\n",
                 std::string("  main  [Standard]  (active)  app.tapp\n") + kSources}),
    [](const auto& row) { return std::string(row.param.name); });

// The project notes the active application by its label.
TEST(CliEditOfTwo, OfTwoApplicationsWithOneLabelNoneIsSelected) {
  CliProject project;
  project.WriteProject({{"app", {"a.c"}}, {"second", {"b.c"}}});
  project.Write("src/app.tapp", "<Application Header=\"app\" />");
  ASSERT_EQ(project.Run({"add", "src/app.tapp"}).code, 0);
  const auto refused = project.Run({"select", "app"});
  EXPECT_EQ(refused.code, 2);
  EXPECT_TRUE(Has(refused.err, "`tarn rename app.tapp NAME`")) << refused.err;
  EXPECT_EQ(project.Run({"rename", "app.tapp", "first"}).code, 0);
  EXPECT_EQ(project.Run({"select", "app"}).out, "selected app\n");
}

TEST(CliEditOfTwo, SelectPutsAnotherApplicationInForceAndAnAddedOneIsActive) {
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

// Both applications have a group of the same label, and the same file in it.
TEST(CliEditOfTwo, ANodeThatBothHaveIsNamedByItsApplication) {
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
    project.Write("src/d.c", "int d;\n");
    const auto answer = project.Run(each.words);
    EXPECT_EQ(answer.code, 0) << answer.err;
    EXPECT_EQ(TreeOf(project), each.tree) << answer.out;
  }
}

TEST(CliEditOfTwo, WhatCanNotBeDoneIsToldAndNothingIsWritten) {
  CliProject project;
  project.WriteProject({{"app", {"a.c", "b.c"}}, {"second", {"a.c"}}});
  project.Write("src/d.c", "int d;\n");
  const std::string before = project.Read("demo.tprj") + project.Read("app.tapp");
  const struct {
    std::vector<std::string> words;
    const char* said;
  } cases[] = {
      {{"add"}, "Usage: tarn add [PROJECT] FILE..."},
      {{"move", "src/b.c"}, "Usage: tarn move [PROJECT] NODE... TARGET"},
      {{"rename", "a", "b", "c", "d"}, "tarn rename --help"},
      {{"add", "src/gone.c"}, "With --create an empty one is made."},
      {{"add", "demo.tprj", "src"}, "src is a folder."},
      {{"add", "src/d.c", "--to", "Nowhere"}, "There is no file, group or application"},
      {{"add", "src/d.c", "src/gone.c"}, "There is no file src/gone.c."},
      {{"remove", "src/b.c", "src/d.c"}, "There is no file, group or application \"src/d.c\""},
      {{"remove", "src/a.c"}, "in this project several times. Write its path, or APP/src/a.c for"},
      {{"remove", "Sources"}, "several times"},
      {{"remove", "src/b.c", "-a", "second"}, "\"src/b.c\" in the application second."},
      {{"move", "src/b.c", "Sources"}, "several times"},
      {{"add", "src/d.c", "--to", "Sources"}, "several times"},
      {{"options", "set", "-n", "src/a.c", "Compiler.Defines", "X"}, "several times"},
      {{"remove", "demo.tprj", "demo.tprj"}, "can't be removed"},
      {{"move", "app", "second"}, "can't hold \"app\""},
      {{"move", "app", "src/b.c"}, "There is no \"src/b.c\" outside of \"app\""},
      {{"rename", "src/b.c", " "}, "no name"},
      {{"rename", "app", "Second"}, "There is an application \"second\" already."},
      {{"select", "secnd"}, "Did you mean \"second\"?"},
  };
  for (const auto& each : cases) {
    const auto answer = project.Run(each.words);
    EXPECT_EQ(answer.code, 2) << each.said;
    EXPECT_TRUE(Has(answer.err, each.said)) << answer.err << "\nwanted: " << each.said;
    EXPECT_EQ(answer.out, "") << each.said;
  }
  EXPECT_EQ(project.Read("demo.tprj") + project.Read("app.tapp"), before);
}

}  // namespace
}  // namespace tarn::host
