#include "hosts/desktop/CodeEditor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>
#include <optional>
#include <string>

#include "hosts/desktop/EditorTabs.h"
#include "platform/qt/QtFont.h"
#include "support/Surroundings.h"

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
    // Styles come as they are drawn, and lines are moved in by them.
    tabs->show();
    tabs->Current()->grab();
    return *tabs->Current();
  }

  ScratchFolder folder;
  ScopedVariable settings;
  std::optional<EditorTabs> tabs;
};

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
