#include "hosts/desktop/DiagnosticMarkers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "support/TestEnvironment.h"
#include "support/qt/WindowLoop.h"

namespace tarn::host {
namespace {

using testing::ScratchFolder;

class DiagnosticMarkersTest : public ::testing::Test {
 protected:
  DiagnosticMarkersTest() {
    list.SetProject(folder / "demo.tprj");
    marks.SetFolder(folder / "");
  }
  void WriteLog(const std::string& messages) {
    folder.Write("demo.tlog", "<?xml version=\"1.0\"?>\n<output>" + messages + "\n</output>");
    marks.Refresh();
  }
  static std::string Message(const char* icon, const std::string& file, int line,
                             const std::string& text) {
    return "\n\t<message Icon=\"" + std::string(icon) + "\" Description=\"d\" Contain=\"" + text +
           "\" File=\"" + file + "\" Line=\"" + std::to_string(line) + "\" />";
  }
  CodeEditor& Open(const std::string& name) {
    EXPECT_TRUE(tabs.OpenFile(folder / name, 0));
    return *tabs.Current();
  }
  // Returns "line kind message" for each symbol in the editor, sorted by line.
  static std::string Shown(CodeEditor& editor) {
    std::string text;
    for (int line = 0; line < editor.lines(); ++line) {
      const unsigned symbols = editor.markersAtLine(line) & 6U;
      if (symbols == 0) continue;
      text += std::to_string(line + 1) + (symbols == 4 ? " error" : " warning");
      for (const LineProblem& each : editor.Problems().GetAll()) {
        if (each.line == line) text += " " + each.message.toStdString();
      }
      text += "; ";
    }
    return text;
  }

  ScratchFolder folder;
  EditorTabs tabs{FileSystem::Native(), nullptr};
  ProblemList list{FileSystem::Native()};
  DiagnosticMarkers marks{list, tabs};
};

TEST_F(DiagnosticMarkersTest, EditorsShowWhatTheLastBuildSaidAboutTheirLines) {
  folder.Write("a.c", "1\n2\n3\n4\n");
  folder.Write("b.c", "1\n2\n");
  CodeEditor& early = Open("a.c");
  const std::string first = Message("1", folder / "a.c", 2, "w") + Message("1", "b.c", 1, "unused");
  WriteLog(first);
  EXPECT_EQ(Shown(early), "2 warning w; ");
  // The build continues: one more message for the same line, and one beyond the end.
  WriteLog(first + Message("2", "./a.c", 2, "bad") + Message("2", "a.c", 99, "end"));
  EXPECT_EQ(Shown(early), "2 error w bad; 5 error end; ");
  CodeEditor& late = Open("b.c");
  EXPECT_EQ(Shown(late), "1 warning unused; ");
  ASSERT_TRUE(early.Load());
  EXPECT_EQ(Shown(early), "2 error w bad; 5 error end; ") << "read again";
  WriteLog(Message("1", "b.c", 2, "other"));
  EXPECT_EQ(Shown(early), "");
  EXPECT_EQ(Shown(late), "2 warning other; ");
}

TEST_F(DiagnosticMarkersTest, StayWithTheirLinesWhileTheUserEdits) {
  struct Row {
    const char* what;
    int line, column, endLine, endColumn;  // replaced range
    const char* by;
    const char* shown;
  };
  for (const Row& row : {
           Row{"a line above", 0, 0, 0, 0, "x\n", "4 error m; "},
           Row{"a line at its start", 2, 0, 2, 0, "x\n", "4 error m; "},
           Row{"a line inside of it", 2, 1, 2, 1, "\n\n", "3 error m; "},
           Row{"two above go", 0, 0, 2, 0, "", "1 error m; "},
           Row{"it is joined to the one before", 1, 1, 2, 0, "", "2 error m; "},
           Row{"more around it goes", 1, 0, 4, 0, "", "2 error m; "},
       }) {
    folder.Write("a.c", "11\n22\n33\n44\n55\n");
    CodeEditor& editor = Open("a.c");
    ASSERT_TRUE(editor.Load());
    editor.Problems().Clear();
    editor.Problems().Add({{2, true, "m"}});
    editor.setSelection(row.line, row.column, row.endLine, row.endColumn);
    editor.replaceSelectedText(row.by);
    EXPECT_EQ(Shown(editor), row.shown) << row.what;
    editor.setModified(false);
  }
}

TEST_F(DiagnosticMarkersTest, TellsUnderTheMouseWhatIsWrong) {
  folder.Write("a.c", "one\ntwo\n");
  CodeEditor& editor = Open("a.c");
  tabs.resize(600, 400);
  tabs.show();
  editor.Problems().Add({{1, false, "a < b"}});
  const int height = editor.textHeight(0);
  const QString text = editor.Problems().TextAt({2, height * 3 / 2});
  EXPECT_TRUE(text.contains("a &lt; b")) << text.toStdString();
  editor.Problems().Add({{1, true, QString("ninechars ").repeated(11) + QString(150, 'x')}});
  EXPECT_TRUE(editor.Problems()
                  .TextAt({2, height * 3 / 2})
                  .contains(QString("ninechars ").repeated(10).trimmed() + "<br>ninechars<br>" +
                            QString(100, 'x') + "<br>" + QString(50, 'x') + "<"));
  EXPECT_EQ(editor.Problems().TextAt({2, height / 2}), "") << "another line";
  EXPECT_EQ(editor.Problems().TextAt({580, height * 3 / 2}), "") << "behind the text";
  EXPECT_EQ(editor.Problems().TextAt({2, height * 8}), "") << "below the text";
}

TEST_F(DiagnosticMarkersTest, OfTenThousandThoseOfTheOpenFileAreShown) {
  constexpr int kCount = 10000;
  std::string text;
  std::string messages;
  for (int line = 1; line <= kCount; ++line) {
    text += "int a;\n";
    messages += Message("1", line % 2 != 0 ? "a.c" : std::to_string(line) + ".c", line, "unused");
  }
  folder.Write("a.c", text);
  CodeEditor& editor = Open("a.c");
  WriteLog(messages);
  EXPECT_LT(editor.Problems().GetAll().size(), kCount / 10U) << "the window waits for them";
  EXPECT_TRUE(
      testing::RunUntil([&] { return editor.Problems().GetAll().size() == kCount / 2U; }, 10000));
  editor.insertAt("\n", 0, 0);
  EXPECT_EQ(editor.Problems().GetAll().size(), kCount / 2U);
}

}  // namespace
}  // namespace tarn::host
