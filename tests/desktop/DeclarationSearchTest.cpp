#include "hosts/desktop/DeclarationSearch.h"

#include <tarn/commands.h>

#include <QStatusBar>

#include "IdeFixture.h"
#include "hosts/desktop/CodeEditor.h"

namespace tarn::testing {
namespace {

using host::CodeEditor;

class DeclarationSearchTest : public IdeFixture {
 protected:
  CodeEditor& Editor() { return *window->Editors().Current(); }
  void PutCursorBefore(const QString& text) {
    int line = 0;
    int column = 0;
    Editor().lineIndexFromPosition(static_cast<int>(Editor().text().indexOf(text)), &line, &column);
    Editor().setCursorPosition(line, column);
  }
  // Returns "file: line" at the cursor.
  QString Place() {
    int line = 0;
    int column = 0;
    Editor().getCursorPosition(&line, &column);
    return window->Editors().tabText(window->Editors().currentIndex()) + ": " + Editor().text(line);
  }
};

TEST_F(DeclarationSearchTest, LeadsFromANameToWhereTheLinkedProgramHasIt) {
  window->OpenPaths({folder / "blinky/src/main.c"});
  PutCursorBefore("uart_flush()");
  EXPECT_TRUE(Choose("Go to declaration"));
  EXPECT_EQ(window->statusBar()->currentMessage(),
            "No global named uart_flush found; build the project first");
  window->Commands().Run(TARN_CMD_BUILD_ALL);
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  QTest::keyClick(&Editor(), Qt::Key_F12);
  EXPECT_EQ(Place(), "uart.c: void uart_flush(void) {\n");

  window->OpenPaths({folder / "blinky/src/main.c"});
  PutCursorBefore("led_init()");
  const auto at = static_cast<unsigned long>(Editor().SendScintilla(CodeEditor::SCI_GETCURRENTPOS));
  const QPoint place(
      static_cast<int>(Editor().SendScintilla(CodeEditor::SCI_POINTXFROMPOSITION, 0UL, at + 2)),
      static_cast<int>(Editor().SendScintilla(CodeEditor::SCI_POINTYFROMPOSITION, 0UL, at)) + 3);
  Editor().setCursorPosition(0, 0);
  QTest::mouseClick(Editor().viewport(), Qt::LeftButton, Qt::ControlModifier, place);
  EXPECT_EQ(Place(), "led.c: void led_init(void) {\n");

  window->OpenPaths({folder / "blinky/src/main.c"});
  PutCursorBefore("void");
  QTest::keyClick(&Editor(), Qt::Key_F12);
  EXPECT_EQ(window->statusBar()->currentMessage(), "No global named void found");
}

}  // namespace
}  // namespace tarn::testing
