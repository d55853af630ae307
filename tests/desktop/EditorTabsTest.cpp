#include "hosts/desktop/EditorTabs.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <string>

#include "hosts/desktop/CodeEditor.h"
#include "support/TestEnvironment.h"
#include "support/qt/WindowLoop.h"

namespace tarn::host {
namespace {

using testing::ReadBytes;
using testing::ScratchFolder;

class EditorTabsTest : public ::testing::Test {
 protected:
  // Presses a button of the next message box.
  void Answer(QMessageBox::StandardButton button) {
    testing::InNextDialog<QMessageBox>([this, button](QMessageBox& box) {
      ++boxes;
      box.button(button)->click();
    });
  }

  ScratchFolder folder;
  EditorTabs tabs{FileSystem::Native(), nullptr};
  int boxes = 0;
};

TEST_F(EditorTabsTest, SavingChangesOnlyWhatTheUserChanged) {
  struct Row {
    const char* name;
    std::string bytes;
  };
  for (const Row& row :
       {Row{"unix.c", "int a;\nint b;\n"}, Row{"windows.c", "int a;\r\nint b;\r\n"},
        Row{"mixed.c", "int a;\r\nint b;\n"}, Row{"utf8.c", "// \xC3\xA9\n"},
        Row{"bytes.c", "// \xE9 \xB5\n"}, Row{"endless.c", "int a;"},
        Row{"mark.c", "\xEF\xBB\xBFint a;\n"}, Row{"cut.c", "// \xE9"},
        Row{"wide.c", {"a\0;\0\n\0", 6}}}) {
    folder.Write(row.name, row.bytes);
    ASSERT_TRUE(tabs.OpenFile(folder / row.name, 0));
    tabs.Current()->append("x");
    EXPECT_EQ(tabs.tabText(tabs.currentIndex()).toStdString(), std::string(row.name) + " *");
    ASSERT_TRUE(tabs.SaveCurrent());
    EXPECT_EQ(ReadBytes(folder / row.name), row.bytes + "x") << row.name;
    EXPECT_EQ(tabs.tabText(tabs.currentIndex()).toStdString(), row.name);
  }
}

TEST_F(EditorTabsTest, AFileIsOpenOnceAndShowsTheLine) {
  folder.Write("a.c", "1\n2\n3\n");
  ASSERT_TRUE(tabs.OpenFile(folder / "a.c", 3));
  folder.Write("b/a.c", "");
  ASSERT_TRUE(tabs.OpenFile(folder / "b/a.c", 0));
  EXPECT_EQ(tabs.tabText(1), "a.c (b)");
  EXPECT_TRUE(tabs.CloseCurrent());
  ASSERT_TRUE(tabs.OpenFile(folder / "./a.c", 2));
  EXPECT_EQ(tabs.count(), 1);
  EXPECT_EQ(tabs.tabText(0), "a.c");
  int line = 0;
  int column = 0;
  tabs.Current()->getCursorPosition(&line, &column);
  EXPECT_EQ(line, 1);
}

TEST_F(EditorTabsTest, UnsavedTextIsAskedForBeforeItGoes) {
  folder.Write("a.c", "old");
  ASSERT_TRUE(tabs.OpenFile(folder / "a.c", 0));
  tabs.Current()->setText("new");
  tabs.Current()->setModified(true);
  Answer(QMessageBox::Cancel);
  EXPECT_FALSE(tabs.MayCloseAll());
  Answer(QMessageBox::Cancel);
  EXPECT_FALSE(tabs.CloseCurrent());
  EXPECT_EQ(tabs.count(), 1);
  Answer(QMessageBox::Save);
  EXPECT_TRUE(tabs.CloseCurrent());
  EXPECT_EQ(ReadBytes(folder / "a.c"), "new");
  EXPECT_EQ(boxes, 3);
}

TEST_F(EditorTabsTest, AFileThatChangedOutsideIsReadAgainUnlessThatWouldLoseSomething) {
  folder.Write("a.c", "old");
  ASSERT_TRUE(tabs.OpenFile(folder / "a.c", 0));
  CodeEditor& editor = *tabs.Current();
  // Wait until the file system's clock has advanced.
  QTest::qWait(20);
  folder.Write("a.c", "new");
  EXPECT_TRUE(testing::RunUntil([&] { return editor.text() == "new"; }));
  editor.insertAt("mine ", 0, 0);
  folder.Write("a.c", "changed again");
  EXPECT_TRUE(testing::RunUntil([&] { return editor.IsInConflict(); }));
  EXPECT_FALSE(tabs.SaveAll());
  EXPECT_EQ(ReadBytes(folder / "a.c"), "changed again");
  editor.KeepMine();
  tabs.FollowDisk();
  EXPECT_FALSE(editor.IsInConflict());
  EXPECT_TRUE(tabs.SaveAll());
  EXPECT_EQ(ReadBytes(folder / "a.c"), "mine new");
}

TEST_F(EditorTabsTest, AFileThatIsNotThereIsToldAndOpensNothing) {
  Answer(QMessageBox::Ok);
  EXPECT_FALSE(tabs.OpenFile(folder / "none.c", 1));
  EXPECT_EQ(tabs.count(), 0);
  EXPECT_EQ(boxes, 1);
}

}  // namespace
}  // namespace tarn::host
