#include "hosts/desktop/FindingsPane.h"

#include <QTreeWidget>

#include "desktop/IdeFixture.h"

namespace tarn::host {
namespace {

class FindingsPaneTest : public testing::IdeFixture {
 protected:
  // Runs a check and returns the list: headings, and findings with their positions.
  QStringList Check() {
    EXPECT_TRUE(Choose("Check project"));
    auto* const pane = static_cast<FindingsPane*>(Dock().widget());
    EXPECT_TRUE(pane->isVisible());
    EXPECT_FALSE(window->tabifiedDockWidgets(&Dock()).isEmpty());
    EXPECT_TRUE(testing::RunUntil([pane] { return !pane->IsChecking(); }));
    QStringList shown;
    for (QTreeWidgetItemIterator each(List()); *each != nullptr; ++each) {
      shown += (*each)->text(0) + ((*each)->text(1).isEmpty() ? "" : "|" + (*each)->text(1));
    }
    return shown;
  }
  QDockWidget& Dock() { return *window->findChild<QDockWidget*>("dockFindings"); }
  QTreeWidget* List() { return Dock().findChild<QTreeWidget*>(); }
};

TEST_F(FindingsPaneTest, AFindingLeadsToItsNodeAndGoesWithItsCause) {
  EXPECT_EQ(Check().join("; "), "");
  const std::string header = folder / "blinky/src/board.h";
  std::filesystem::rename(header, header + ".off");
  EXPECT_EQ(Check().join("; "),
            QString("Missing files; src/board.h is missing|blinky-avr.tapp:55"));
  QTest::keyClick(List(), Qt::Key_Return);
  EXPECT_EQ(Tree().currentIndex().data().toString(), "board.h");
  std::filesystem::rename(header + ".off", header);
  EXPECT_EQ(Check().join("; "), "");
}

}  // namespace
}  // namespace tarn::host
