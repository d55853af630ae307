#include "hosts/desktop/CodeEditor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>
#include <QTest>
#include <QWheelEvent>
#include <optional>
#include <string>

#include "hosts/desktop/EditorTabs.h"
#include "support/TestEnvironment.h"
#include "widgets/qt/QtColor.h"

namespace tarn::host {
namespace {

using testing::ScopedVariable;
using testing::ScratchFolder;

class CodeEditorTest : public ::testing::Test {
 protected:
  CodeEditorTest() : settings("TARN_SETTINGS", (folder / "settings").c_str()) {
    tabs.emplace(FileSystem::Native(), nullptr);
  }
  CodeEditor& Open(const std::string& name, const std::string& text) {
    folder.Write(name, text);
    EXPECT_TRUE(tabs->OpenFile(folder / name, 0));
    // Styles are computed when drawing, and indentation depends on them.
    tabs->show();
    tabs->Current()->grab();
    return *tabs->Current();
  }
  static long ZoomOf(const CodeEditor& editor) {
    return editor.SendScintilla(QsciScintillaBase::SCI_GETZOOM);
  }

  ScratchFolder folder;
  ScopedVariable settings;
  std::optional<EditorTabs> tabs;
};

TEST_F(CodeEditorTest, TheSizeOfTheTextIsTheSameInAllEditorsAndIsKept) {
  CodeEditor& one = Open("a.c", "a");
  CodeEditor& other = Open("b.c", "b");
  const int numbers = one.marginWidth(0);
  QTest::keyClick(&one, Qt::Key_Plus, Qt::ControlModifier);
  QWheelEvent turn({5, 5}, one.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton,
                   Qt::ControlModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(one.viewport(), &turn);
  EXPECT_EQ(ZoomOf(one), 2);
  EXPECT_EQ(ZoomOf(other), 2);
  EXPECT_GT(one.marginWidth(0), numbers);
  EXPECT_EQ(ZoomOf(Open("c.c", "c")), 2) << "opened later";
  tabs.emplace(FileSystem::Native(), nullptr);
  CodeEditor& later = Open("a.c", "a");
  EXPECT_EQ(ZoomOf(later), 2) << "in the next run";
  tabs->Zoom().Set(-100);
  EXPECT_EQ(ZoomOf(later), -6) << "still to be read";
}

TEST_F(CodeEditorTest, WhatIsTypedIsMovedInAsTheFileIs) {
  struct Row {
    const char* name;
    std::string text;
    const char* levelIn;  // text inserted by the Tab key
    int width;
  };
  const std::string late(5000, '\n');
  for (const Row& row : {
           Row{"two.c", "int f(void) {\n  if (a) {\n    b;\n  }\n}\n", "  ", 2},
           Row{"tabs.c", "int f(void) {\r\n\ta;\r\n\tb;\r\n  c;\r\n}\r\n", "\t", 4},
           Row{"comment.c", "/*\n * a\n * b\n */\nvoid f() {\n   a;\n\n   b;\n}", "   ", 3},
           Row{"below.c", "f(a,\n            b);\nvoid g() {\n    c;\n}\n", "    ", 4},
           Row{"none.c", "", "    ", 4},
           Row{"rules.mk", "a = b\n", "\t", 4},
           Row{"Makefile", "a = b\n", "\t", 4},
           Row{"late.c", late + "  a\n", "    ", 4},
           Row{"start.s", "main:\n\tnop\n", "\t", 8},
       }) {
    CodeEditor& editor = Open(row.name, row.text);
    editor.setCursorPosition(0, 0);
    QTest::keyClick(&editor, Qt::Key_Tab);
    EXPECT_EQ(editor.text(), row.levelIn + QString::fromStdString(row.text)) << row.name;
    EXPECT_EQ(editor.tabWidth(), row.width) << row.name;
    editor.setModified(false);
  }
}

TEST_F(CodeEditorTest, ANewLineBeginsWhereTheOneBeforeDoes) {
  struct Row {
    const char* name;
    const char* text;
    const char* keys;
    const char* result;
  };
  for (const Row& row : {
           Row{"in.c", "  a;\n  b;", "c;", "  a;\n  b;\n  c;"},
           Row{"block.c", "  a;\nif (b) {", "c;", "  a;\nif (b) {\n  c;"},
           Row{"end.c", "f {\n  a;", "}", "f {\n  a;\n}"},
           Row{"a.s", "main:\n\tnop", "ret", "main:\n\tnop\n\tret"},
       }) {
    CodeEditor& editor = Open(row.name, row.text);
    editor.setCursorPosition(1, editor.lineLength(1));
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClicks(&editor, row.keys);
    EXPECT_EQ(editor.text().toStdString(), row.result) << row.name;
    editor.setModified(false);
  }
}

TEST_F(CodeEditorTest, LineNumbersCanBeReadOnEachDesktop) {
  const QPalette before = QApplication::palette();
  CodeEditor& editor = Open("a.c", "a");
  for (const QColor& desktop : {QColor(239, 239, 239), QColor(45, 46, 48)}) {
    QApplication::setPalette(QPalette(desktop));
    QApplication::processEvents();
    const auto number = static_cast<Color>(editor.SendScintilla(
        QsciScintillaBase::SCI_STYLEGETFORE, QsciScintillaBase::STYLE_LINENUMBER));
    const auto paper = static_cast<Color>(editor.SendScintilla(
        QsciScintillaBase::SCI_STYLEGETBACK, QsciScintillaBase::STYLE_LINENUMBER));
    EXPECT_EQ(ToQtColor(paper), desktop);
    EXPECT_GE(ContrastOf(ToQtColor(number), ToQtColor(paper)), 4.5);
  }
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace tarn::host
