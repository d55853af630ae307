#include "hosts/desktop/FindBar.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "support/TestEnvironment.h"

namespace tarn::host {
namespace {

TEST(TextSearchTest, PlacesAndReplacements) {
  struct Row {
    const char* text;
    SearchOptions options;
    const char* replacement;
    const char* expected;  // start+length=replacement
  };
  const Row rows[] = {
      {"led LED leds", {"led", false, false, false}, "x", "0+3=x 4+3=x 8+3=x "},
      {"led LED leds", {"led", true, true, false}, "x", "0+3=x "},
      {"a.c abc", {"a.c", false, false, false}, "\\1", "0+3=\\1 "},
      {"a.c abc", {"a(.)c", false, false, true}, "<\\1\\n>", "0+3=<.\n> 4+3=<b\n> "},
      {"a;\r\nb;\r\n", {";$", false, false, true}, "", "1+1= 5+1= "},
      {"\xC3\xA9t\xC3\xA9 x", {"X", false, true, false}, "", "4+1= "},
      {"abc", {"x*", false, false, true}, "", ""},
      {"abc", {"(", false, false, true}, "", "missing closing parenthesis"},
  };
  for (const Row& row : rows) {
    const SearchResult result = SearchText(row.text, row.options, row.replacement, 100);
    QString reported = result.problem;
    for (const SearchHit& hit : result.hits) {
      reported += QString("%1+%2=%3 ").arg(hit.start).arg(hit.length).arg(hit.replacement);
    }
    EXPECT_EQ(reported.toStdString(), row.expected) << row.options.text.toStdString();
  }
}

class FindBarTest : public ::testing::Test {
 protected:
  FindBarTest() {
    folder.Write("a.c", "// \xC3\xA9\nint led;\nint Led;\nled = 1;\n");
    tabs.OpenFile(folder / "a.c", 1);
    bar.Open(true);
    pattern = bar.findChildren<QLineEdit*>().at(0);
    replacement = bar.findChildren<QLineEdit*>().at(1);
  }
  std::string Selected() { return tabs.Current()->selectedText().toStdString(); }
  int Line() {
    int line = 0;
    int column = 0;
    tabs.Current()->getCursorPosition(&line, &column);
    return line + 1;
  }
  std::string Shown() { return bar.findChild<QLabel*>()->text().toStdString(); }

  testing::ScratchFolder folder;
  QWidget window;
  EditorTabs tabs{FileSystem::Native(), &window};
  FindBar bar{tabs, &window};
  QLineEdit* pattern = nullptr;
  QLineEdit* replacement = nullptr;
};

TEST_F(FindBarTest, KeysGoFromPlaceToPlaceAroundTheEndAndEscapeLeaves) {
  window.show();
  QTest::keyClicks(pattern, "LED");
  EXPECT_EQ(Shown(), "3 found");
  std::string lines;
  for (int i = 0; i < 4; ++i) {
    QTest::keyClick(pattern, Qt::Key_Return);
    lines += std::to_string(Line()) + ' ' + Shown() + ", ";
  }
  QTest::keyClick(pattern, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(lines, "2 1 of 3, 3 2 of 3, 4 3 of 3, 2 1 of 3, ");
  EXPECT_EQ(Line(), 4);
  EXPECT_EQ(Selected(), "led");
  QTest::keyClick(pattern, Qt::Key_Escape);
  EXPECT_TRUE(bar.isHidden());
}

TEST_F(FindBarTest, ReplacingIsOneStepBackAndTakesWhatIsSelectedFirst) {
  window.show();
  pattern->setText("led");
  replacement->setText("lamp\xC3\xBC");
  bar.Find(true);
  replacement->setFocus();
  QTest::keyClick(replacement, Qt::Key_Return);
  EXPECT_EQ(tabs.Current()->text().toStdString(),
            "// \xC3\xA9\nint lamp\xC3\xBC;\nint Led;\nled = 1;\n");
  EXPECT_EQ(Line(), 3);
  bar.findChildren<QPushButton*>().at(1)->click();
  EXPECT_EQ(tabs.Current()->text().toStdString(),
            "// \xC3\xA9\nint lamp\xC3\xBC;\nint lamp\xC3\xBC;\nlamp\xC3\xBC = 1;\n");
  EXPECT_EQ(Shown(), "2 replaced");
  tabs.Current()->undo();
  EXPECT_EQ(tabs.Current()->text().toStdString(),
            "// \xC3\xA9\nint lamp\xC3\xBC;\nint Led;\nled = 1;\n");
}

TEST_F(FindBarTest, WhatIsPutInIsNotReplacedAgain) {
  window.show();
  pattern->setText("led");
  replacement->setText("ledled\xC3\xBC");
  bar.Find(true);
  replacement->setFocus();
  for (int i = 0; i < 3; ++i) QTest::keyClick(replacement, Qt::Key_Return);
  EXPECT_EQ(tabs.Current()->text().toStdString(),
            "// \xC3\xA9\nint ledled\xC3\xBC;\nint ledled\xC3\xBC;\nledled\xC3\xBC = 1;\n");
}

TEST_F(FindBarTest, AllAreReplacedHoweverManyThereAre) {
  window.show();
  tabs.Current()->setText(QString("a\n").repeated(10001));
  pattern->setText("a");
  EXPECT_EQ(Shown(), "10000+ found");
  replacement->setText("b");
  bar.findChildren<QPushButton*>().at(1)->click();
  EXPECT_FALSE(tabs.Current()->text().contains('a'));
}

TEST_F(FindBarTest, TheMiddleButtonClosesATabAndWithTheLastOneTheBar) {
  window.show();
  QTest::mouseClick(tabs.tabBar(), Qt::MiddleButton, {}, tabs.tabBar()->tabRect(0).center());
  EXPECT_EQ(tabs.count(), 0);
  EXPECT_TRUE(bar.isHidden());
}

}  // namespace
}  // namespace tarn::host
