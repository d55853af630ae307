// Undo and redo: applying changes of the files to the open project in memory.

#include <gtest/gtest.h>

#include <functional>

#include "project/ProjectFixture.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

using Texts = std::vector<FileText>;
using Lines = std::vector<std::string>;

class ApplyChange : public ::testing::Test {
 protected:
  void SetUp() override {
    world.AddDemo(
        "<Group Header=\"G\" ><C Header=\"a.c\" Path=\".\\a.c\" /><C Header=\"c.c\" "
        "Path=\".\\c.c\" /></Group>"
        "<C Header=\"b.c\" Path=\".\\b.c\" />");
    world.AddFile("/p/other.tapp",
                  "\n<Application Header=\"other\" ><Group Header=\"O\" /></Application>");
    ASSERT_EQ(world.OpenDemo(), 1);
    before = world.model->Saver().RenderFiles();
  }

  std::string Tree() { return ProjectFixture::Labels(world.model->GetProjectRoot()); }
  void Replace(const std::string& path, std::string_view from, std::string_view to) {
    world.AddFile(path, ReplaceAll(world.FileText(path), from, to));
  }
  Lines Undo() { return world.model->Lifecycle().ApplyChange(after, before); }
  Lines Redo() { return world.model->Lifecycle().ApplyChange(before, after); }

  ProjectFixture world;
  Texts before, after;
};

TEST_F(ApplyChange, GoesBackAndOnInMemoryUntilASave) {
  const std::string old = world.FileText("/p/demo.tapp");
  ASSERT_EQ(world.model->Editor().RemoveItem("a.c"), 1);
  after = world.model->Saver().RenderFiles();
  EXPECT_EQ(Undo(), Lines());
  EXPECT_EQ(Tree(), "demo[G[a.c c.c] b.c]");
  EXPECT_FALSE(world.model->State().HasUnsaved()) << "it is as it was saved";
  EXPECT_EQ(Redo(), Lines());
  EXPECT_TRUE(world.model->State().HasUnsaved());
  EXPECT_EQ(Tree(), "demo[G[c.c] b.c]");
  EXPECT_EQ(world.FileText("/p/demo.tapp"), old);
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(Tree(), "demo[G[c.c] b.c]");
  const std::string saved = world.FileText("/p/demo.tapp");
  EXPECT_EQ(Undo(), Lines());
  EXPECT_TRUE(world.model->IsModified());
  ASSERT_EQ(world.model->CloseProject(), 1);
  EXPECT_EQ(world.FileText("/p/demo.tapp"), ReplaceAll(before.front().text, "\r\n", "\n"));
  EXPECT_NE(world.FileText("/p/demo.tapp"), saved);
  EXPECT_EQ(Undo(), Lines{"no project is open"});
}

// Commands that follow apply to the same node as before, or to none.
TEST_F(ApplyChange, TheCurrentNodeStaysOrIsTheProject) {
  CXmlNode& root = world.model->GetProjectRoot();
  const auto label = [this] {
    return OrEmpty(world.model->GetCurrentNode()->GetAttrValue("Header"));
  };
  world.model->SetCurrentNode(root.FindDescendant("Group"));
  ASSERT_EQ(world.model->Editor().RemoveItem("a.c"), 1);
  after = world.model->Saver().RenderFiles();
  world.model->SetCurrentNode(root.FindDescendant("Group"));
  EXPECT_EQ(Undo(), Lines());
  EXPECT_EQ(label(), "G");
  world.model->SetCurrentNode(world.model->GetProjectRoot().FindDescendantByAttr("Header", "a.c"));
  EXPECT_EQ(Redo(), Lines());
  EXPECT_EQ(world.model->GetCurrentNode(), &world.model->GetProjectRoot());
}

// Changes made between the removal of a.c and its undo.
TEST_F(ApplyChange, WhatHasChangedSinceStaysOrNothingIsDone) {
  const auto edit = [this](std::string_view from, std::string_view to) {
    ASSERT_EQ(world.model->SaveProject(), 1);
    Replace("/p/demo.tapp", from, to);
    ASSERT_EQ(world.OpenDemo(), 1);
  };
  const struct {
    const char* name;
    std::function<void()> meanwhile;
    const char* tree;
    Lines problems;
  } rows[] = {
      {"a node, not saved",
       [&] { world.model->Editor().RemoveItem("b.c"); },
       "demo[G[a.c c.c]]",
       {}},
      {"a label, on the disk", [&] { edit("\"b.c\"", "\"x.c\""); }, "demo[G[a.c c.c] x.c]", {}},
      {"the group is renamed", [&] { edit("\"G\"", "\"H\""); }, "demo[H[a.c c.c] b.c]", {}},
      {"the group is gone",
       [&] { world.model->Editor().RemoveItem("G"); },
       "demo[b.c]",
       {"/p/demo.tapp: G has changed since"}},
      {"the application is gone",
       [&] { world.model->Editor().RemoveItem("demo"); },
       "",
       {"/p/demo.tapp is no longer part of the project"}},
      {"the host says no",
       [&] { world.host.answers[kMsgProjectClosing] = 0; },
       "demo[G[c.c] b.c]",
       {"the host keeps the project open"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    ASSERT_EQ(world.model->Editor().RemoveItem("a.c"), 1);
    after = world.model->Saver().RenderFiles();
    row.meanwhile();
    EXPECT_EQ(Undo(), row.problems);
    EXPECT_EQ(Tree(), row.tree);
    EXPECT_TRUE(world.model->IsModified() || !row.problems.empty());
    world.host.answers.clear();
    ASSERT_EQ(world.model->CloseProject(), 1);
    SetUp();
  }
}

// An undo records what the disk had, so a save merges changes made by another program.
TEST_F(ApplyChange, ASaveAfterwardsKeepsWhatAnotherProgramWrote) {
  ASSERT_EQ(world.model->Editor().RemoveItem("a.c"), 1);
  after = world.model->Saver().RenderFiles();
  ASSERT_EQ(world.model->SaveProject(), 1);
  Replace("/p/demo.tapp", "\"b.c\"", "\"x.c\"");
  EXPECT_EQ(Undo(), Lines());
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(Tree(), "demo[G[a.c c.c] x.c]");
  EXPECT_EQ(world.FileText("/p/demo.tapp.orig"), "(none)");
}

TEST_F(ApplyChange, AnApplicationThatHasMovedSinceIsFollowed) {
  for (const char* name : {"/p/a.c", "/p/b.c", "/p/c.c"}) world.AddFile(name, "");
  ASSERT_EQ(world.model->Editor().RemoveItem("a.c"), 1);
  after = world.model->Saver().RenderFiles();
  ASSERT_EQ(world.model->SaveProject(), 1);
  ASSERT_EQ(world.model->CloseProject(), 1);
  Replace("/p/demo.tapp", "Path=\".\\", "Path=\"..\\");
  Replace("/p/demo.tapp", "..\\demo.tapp", ".\\sub\\demo.tapp");
  Replace("/p/demo.tapp", "Extern=\".\\demo", "Extern=\".\\sub\\demo");
  Replace("/p/demo.tprj", ".\\demo.tapp", ".\\sub\\demo.tapp");
  world.AddFile("/p/sub/demo.tapp", world.FileText("/p/demo.tapp"));
  world.disk.Erase("/p/demo.tapp");
  ASSERT_EQ(world.OpenDemo(), 1);
  EXPECT_EQ(Undo(), Lines());
  EXPECT_EQ(Tree(), "demo[G[a.c c.c] b.c]");
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_NE(world.FileText("/p/sub/demo.tapp").find("Path=\"..\\a.c\""), std::string::npos);
}

TEST_F(ApplyChange, AnApplicationThatWasTakenOutComesBackWithAllThatWasNotSaved) {
  const auto remove = [this] {
    before = world.model->Saver().RenderFiles();
    ASSERT_EQ(world.model->Editor().RemoveItem("demo"), 1);
    after = world.model->Saver().RenderFiles();
  };
  ASSERT_EQ(world.model->Editor().RemoveItem("a.c"), 1);
  remove();
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(Undo(), Lines());
  EXPECT_EQ(Tree(), "demo[G[c.c] b.c]");
  // Again, with a file that another program has written.
  ASSERT_EQ(world.model->SaveProject(), 1);
  remove();
  ASSERT_EQ(world.model->SaveProject(), 1);
  Replace("/p/demo.tapp", "\"b.c\"", "\"x.c\"");
  EXPECT_EQ(Undo(), Lines());
  EXPECT_EQ(Tree(), "demo[G[c.c] x.c]");
  ASSERT_EQ(world.model->SaveProject(), 1);
  EXPECT_EQ(world.FileText("/p/demo.tapp.orig"), "(none)");
}

TEST_F(ApplyChange, ATextThatIsNoFileOfAProjectIsRefused) {
  after = before;
  for (const char* text : {"", "<Application", "<Application><C></Application>", "x"}) {
    after.front().text = text;
    EXPECT_EQ(Redo(), Lines{before.front().path + " is damaged"}) << text;
    EXPECT_EQ(Tree(), "demo[G[a.c c.c] b.c]");
  }
}

}  // namespace
}  // namespace tarn::test
