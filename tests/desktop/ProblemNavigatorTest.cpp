// Navigation from the problems of a real build to their lines.
#include "hosts/desktop/ProblemNavigator.h"

#include <QDockWidget>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTextBlock>
#include <QTreeView>
#include <fstream>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/CodeEditor.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

class ProblemNavigatorTest : public testing::IdeFixture {
 protected:
  void Append(const std::string& file, const std::string& text) {
    std::ofstream(folder / ("blinky/src/" + file), std::ios::app) << text;
  }
  int LinesOf(const std::string& file) {
    const std::string text = testing::ReadBytes(folder / ("blinky/src/" + file));
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
  }
  void Build() {
    ASSERT_TRUE(Choose("Build all"));
    ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  }
  // Returns "file:line" of the cursor.
  std::string Place() {
    const CodeEditor* const editor = window->Editors().Current();
    if (editor == nullptr) return {};
    int line = 0;
    int column = 0;
    editor->getCursorPosition(&line, &column);
    return std::filesystem::path(editor->GetPath()).filename().string() + ":" +
           std::to_string(line + 1);
  }
  std::string Said() { return window->statusBar()->currentMessage().toStdString(); }
};

TEST_F(ProblemNavigatorTest, LeadsRoundTheProblemsOfABuildAndFromAClickInLogAndReport) {
  Append("main.c", "static int left_over;\n");
  Append("blinker.c", "int broken = missing;\n");
  const std::string warning = "main.c:" + std::to_string(LinesOf("main.c"));
  const std::string error = "blinker.c:" + std::to_string(LinesOf("blinker.c"));
  EXPECT_TRUE(Choose("Next problem"));
  EXPECT_EQ(Said(), "The last build had no errors or warnings");
  Build();
  ASSERT_TRUE(Choose("Next problem"));
  EXPECT_EQ(Place(), warning);
  EXPECT_TRUE(Said().starts_with("Warning 1 of 2: ")) << Said();
  ASSERT_TRUE(Choose("Next problem"));
  EXPECT_EQ(Place(), error);
  EXPECT_TRUE(Said().starts_with("Error 2 of 2: ")) << Said();

  // A click on the warning in the log; the next problem is the one after it.
  auto* const log = window->findChild<QPlainTextEdit*>();
  QTextCursor found;
  ASSERT_TRUE(RunUntil(
      [&] {
        found = log->document()->find("left_over");
        return !found.isNull();
      },
      5000));
  log->setTextCursor(found);
  log->ensureCursorVisible();
  const QPoint place = log->cursorRect(found).center() - QPoint(4, 0);
  QTest::mouseMove(log->viewport(), place);
  QTest::mouseClick(log->viewport(), Qt::LeftButton, {}, place);
  EXPECT_TRUE(RunUntil([&] { return Place() == warning; }));
  ASSERT_TRUE(Choose("Next problem"));
  EXPECT_EQ(Place(), error);

  // The same with the report.
  auto* const dock = window->findChild<QDockWidget*>("dock4006");
  dock->show();
  dock->raise();
  auto* const report = dock->findChild<QTreeView*>();
  QModelIndex row;
  ASSERT_TRUE(RunUntil(
      [&] {
        const auto rows = report->model()->match(report->model()->index(0, 1), Qt::DisplayRole,
                                                 "left_over", 1, Qt::MatchContains);
        if (!rows.isEmpty()) row = rows.front();
        return report->visualRect(row).isValid();
      },
      5000));
  QTest::mouseClick(report->viewport(), Qt::LeftButton, {}, report->visualRect(row).center());
  EXPECT_TRUE(RunUntil([&] { return Place() == warning; }));
}

TEST_F(ProblemNavigatorTest, ALongLogIsReadInPiecesAheadOfAStep) {
  std::string log = "<?xml version=\"1.0\"?>\n<output>";
  for (int line = 1; line <= 2000; ++line) {
    log +=
        "\n\t<message Icon=\"1\" Description=\"d\" Contain=\"broken\" File=\"src/main.c\" Line=\"" +
        std::to_string(line) + "\" />";
  }
  folder.Write("blinky/blinky-avr.tlog", log + "\n</output>");
  ASSERT_TRUE(Choose("Previous problem"));
  EXPECT_EQ(Said(), "") << "all of it has been read at once";
  EXPECT_TRUE(RunUntil([&] { return !Said().empty(); }));
  EXPECT_EQ(Said(), "Warning 2000 of 2000: broken");
}

}  // namespace
}  // namespace tarn::host
