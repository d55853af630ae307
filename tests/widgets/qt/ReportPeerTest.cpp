#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QEventLoop>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QToolButton>
#include <QToolTip>
#include <QTreeView>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "widgets/ReportControl.h"
#include "widgets/qt/QtToolkit.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {
namespace {

// Records the messages of the report.
class ReportOwner : public CWnd {
 public:
  ReportOwner() { Create(kStylePopup | kStyleVisible, {0, 0, 400, 200}, nullptr, 0); }
  ~ReportOwner() override { DestroyWindow(); }

  std::string Take() { return std::exchange(notified_, {}); }
  std::function<void()> onNotified;
  int menus = 0;

 protected:
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam, std::intptr_t) override {
    const auto& notice = *reinterpret_cast<const ReportNotice*>(wParam);
    static constexpr const char* kNames[] = {"click",     "double", "enter", "header",
                                             "selection", "check",  "edit"};
    notified_ += kNames[message - kMsgReportClick];
    notified_ += " " + std::to_string(notice.row) + "," + std::to_string(notice.column);
    if (notice.hyperlink >= 0) notified_ += " link " + std::to_string(notice.hyperlink);
    notified_ += "; ";
    if (onNotified) onNotified();
    return 0;
  }
  bool OnContextMenu(Point) override { return ++menus > 1; }

 private:
  std::string notified_;
};

struct ReportPeerTest : ::testing::Test {
  ReportPeerTest() {
    const struct {
      const char* caption;
      int width;
      bool isAutoSize;
      int icon;
    } kColumns[] = {{"Done", 24, false, 0}, {"Name", 100, true, -1}, {"File", 100, true, -1}};
    for (const auto& each : kColumns) {
      report.AddColumn(std::make_unique<CReportColumn>(report.GetColumns().GetCount(), each.caption,
                                                       each.width, each.isAutoSize, each.icon, true,
                                                       true));
    }
    report.GetColumns().GetAt(0)->SetEditable(true);
    report.GetColumns().GetAt(1)->SetEditable(true);
    report.AllowEdit(true);
    report.Create(kStyleChild | kStyleVisible, {0, 0, 400, 200}, &owner, 7);
    WidgetOf(owner)->resize(400, 200);
    WidgetOf(owner)->show();
    view = WidgetOf(report)->findChild<QTreeView*>();
    tester = std::make_unique<QAbstractItemModelTester>(
        view->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (const char* const name : {"pear", "apple", "fig"}) Add(name, "main.c");
    report.Populate();
    Settle();
  }
  ~ReportPeerTest() override { report.DestroyWindow(); }

  CReportRecord& Add(const std::string& name, const std::string& file) {
    auto record = std::make_unique<CReportRecord>();
    record->AddItem(std::make_unique<CReportRecordItem>())->SetHasCheckbox(true);
    record->AddItem(std::make_unique<CReportRecordItem>())->SetOwnCaption(name);
    record->AddItem(std::make_unique<CReportRecordItem>())->SetOwnCaption(file);
    return *report.AddRecord(std::move(record));
  }
  static void Settle() { QTest::qWait(60); }
  std::string Shown() const {
    std::string text;
    for (int row = 0; row < view->model()->rowCount(); ++row) {
      text += FromQt(view->model()->index(row, 1).data().toString()) + " ";
    }
    return text;
  }
  QPoint CellAt(int row, int column) const {
    return view->visualRect(view->model()->index(row, column)).center();
  }
  QPoint TextAt(int row, int column) const {
    const QRect cell = view->visualRect(view->model()->index(row, column));
    return {cell.left() + 8, cell.center().y()};
  }
  void Click(QPoint place, Qt::KeyboardModifiers keys = {}) const {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, keys, place);
  }
  void ClickHead(int column) const {
    QHeaderView& head = *view->header();
    QTest::mouseClick(head.viewport(), Qt::LeftButton, {},
                      {head.sectionViewportPosition(column) + 10, head.height() / 2});
  }

  QtToolkit toolkit;
  ReportOwner owner;
  CReportControl report;
  QTreeView* view = nullptr;
  std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(ReportPeerTest, MouseAndKeysGoThroughTheControl) {
  report.GetItemAt(2, 1)->SetOwnCaption("");
  Click(CellAt(1, 2));
  EXPECT_EQ(owner.Take(), "selection 1,-1; click 1,2; ");
  EXPECT_EQ(view->currentIndex().row(), 1);
  Click(CellAt(2, 1), Qt::ShiftModifier);
  EXPECT_EQ(owner.Take(), "selection 2,-1; click 2,1; ");
  EXPECT_EQ(view->selectionModel()->selectedRows().size(), 2);
  QTest::keyClick(view, Qt::Key_F10, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(owner.Take(), "header -1,1; ");
  QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "apple\tmain.c\n\tmain.c\n");
  report.GetItemAt(2, 1)->SetOwnCaption("fig");

  Click(CellAt(0, 0));
  EXPECT_EQ(owner.Take(), "selection 0,-1; check 0,0; click 0,0; ");
  EXPECT_EQ(view->model()->index(0, 0).data(Qt::CheckStateRole), Qt::Checked);
  QTest::keyClick(view, Qt::Key_Space);
  QTest::keyClick(view, Qt::Key_Down);
  QTest::keyClick(view, Qt::Key_Return);
  EXPECT_EQ(owner.Take(), "check 0,0; selection 1,-1; enter 1,-1; ");
  QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(report.GetSelectedRows().GetCount(), 3);
  QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(view, &menu);
  EXPECT_EQ(owner.menus, 1);
  // The owner does not handle the request, so the default menu appears.
  const auto* const shown = view->findChild<QMenu*>();
  ASSERT_NE(shown, nullptr);
  for (QAction* const sort : shown->actions().last()->menu()->actions()) {
    if (sort->text() == "Name") sort->trigger();
  }
  EXPECT_EQ(Shown(), "apple fig pear ");
  QTest::keyClicks(view, "PE");
  EXPECT_EQ(report.GetFocusedRow(), 2);
  QContextMenuEvent second(QContextMenuEvent::Mouse, CellAt(0, 1), {});
  QApplication::sendEvent(view->viewport(), &second);
  EXPECT_EQ(report.GetSelectedRows().GetIndexes(), std::vector<int>{0});
  // The space key enters a space if the row has no check box.
  report.AllowEdit(false);
  report.GetItemAt(1, 1)->SetOwnCaption("pear");
  report.GetItemAt(2, 1)->SetOwnCaption("pe x");
  QTest::qWait(QApplication::keyboardInputInterval() + 20);
  QTest::keyClicks(view, "PE X");
  EXPECT_EQ(report.GetFocusedRow(), 2);
}

TEST_F(ReportPeerTest, HeadsSortGroupAndTakeTheWidthsThatTheUserGives) {
  ClickHead(1);
  EXPECT_EQ(Shown(), "apple fig pear ");
  ClickHead(1);
  EXPECT_EQ(Shown(), "pear fig apple ");
  QHeaderView& head = *view->header();
  EXPECT_EQ(head.length(), view->viewport()->width());
  head.resizeSection(1, 250);
  Settle();
  EXPECT_EQ(report.GetColumns().GetAt(1)->GetWidth(), 250);
  EXPECT_EQ(head.length(), view->viewport()->width());
  QContextMenuEvent menu(QContextMenuEvent::Mouse, {head.sectionViewportPosition(2) + 5, 5}, {});
  QApplication::sendEvent(head.viewport(), &menu);
  EXPECT_EQ(owner.Take(), "header -1,2; ");

  report.ShowGroupBy(true);
  report.GetReportHeader().NotifyGrouped(2);
  EXPECT_EQ(Shown(), "File: main.c pear fig apple ");
  Settle();
  Click(TextAt(0, 0));
  EXPECT_EQ(Shown(), "File: main.c ");
  Click(TextAt(0, 0));
  const auto buttons = WidgetOf(report)->findChildren<QToolButton*>();
  ASSERT_EQ(buttons.size(), 1);
  // It must survive, since it may have the focus.
  head.resizeSection(1, 200);
  EXPECT_EQ(WidgetOf(report)->findChildren<QToolButton*>(), buttons);
  buttons[0]->click();
  EXPECT_EQ(Shown(), "pear fig apple ");

  // Drag a header into the box above.
  const QPoint start(head.sectionViewportPosition(2) + 10, head.height() / 2);
  QTest::mousePress(head.viewport(), Qt::LeftButton, {}, start);
  QTest::mouseRelease(head.viewport(), Qt::LeftButton, {}, {start.x(), -5});
  EXPECT_EQ(Shown(), "File: main.c pear fig apple ");

  report.GetColumns().GetAt(2)->SetVisible(false);
  EXPECT_TRUE(head.isSectionHidden(2));
  report.GetColumns().Clear();
  EXPECT_EQ(head.count(), 0);
  EXPECT_EQ(report.HitTest({20, 5}).row, 0) << "the group's";
  view->grab();
}

TEST_F(ReportPeerTest, TipsShowWhatIsCut) {
  const std::string path = std::string(200, '/') + "long.c";
  Add("cherry", path);
  report.Populate();
  report.GetReportHeader().NotifyGrouped(2);
  Settle();
  const auto tipAt = [this](int row, int column) {
    const QPoint place = CellAt(row, column);
    QHelpEvent ask(QEvent::ToolTip, place, view->viewport()->mapToGlobal(place));
    QApplication::sendEvent(view->viewport(), &ask);
    if (!ask.isAccepted()) return std::string();
    return FromQt(QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText());
  };
  ASSERT_EQ(Shown().substr(0, 7), "File: /");
  EXPECT_EQ(tipAt(0, 1), "File: " + path);
  EXPECT_EQ(tipAt(1, 1), "");
  EXPECT_EQ(tipAt(1, 2), path);
  EXPECT_EQ(tipAt(2, 1), "");
}

TEST_F(ReportPeerTest, LinksAreWhereTheyAreDrawn) {
  CReportRecord& record = Add("see \xC3\xA4 here", "x");
  record.GetItem(1)->AddHyperlink(std::make_unique<CReportHyperlink>(7, 4));
  report.Populate();
  Settle();
  const int y = CellAt(3, 1).y();
  const int left = view->header()->sectionViewportPosition(1) + ReportLayout::kCellMargin;
  const QFontMetrics metrics = view->fontMetrics();
  const int start = left + metrics.horizontalAdvance("see \u00e4 ");
  const int end = left + metrics.horizontalAdvance("see \u00e4 here");
  const struct {
    int x;
    int link;
  } kCases[] = {{start - 3, -1}, {start + 2, 0}, {end - 2, 0}, {end + 3, -1}};
  for (const auto& each : kCases) {
    EXPECT_EQ(report.HitTest({each.x, y}).hyperlink, each.link) << each.x;
    QTest::mouseMove(view->viewport(), {each.x, y});
    QMouseEvent move(QEvent::MouseMove, QPointF(each.x, y), QPointF(each.x, y), Qt::NoButton, {},
                     {});
    QApplication::sendEvent(view->viewport(), &move);
    EXPECT_EQ(view->viewport()->cursor().shape() == Qt::PointingHandCursor, each.link == 0);
  }
  Click({start + 2, y});
  EXPECT_EQ(owner.Take(), "selection 3,-1; click 3,1 link 0; ");
}

TEST_F(ReportPeerTest, TextsAreEditedInTheirCell) {
  report.SelectRow(1);
  QTest::keyClick(view, Qt::Key_F2);
  Settle();
  auto* editor = view->viewport()->findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->text(), "apple");
  editor->setText("plum");
  QTest::keyClick(editor, Qt::Key_Return);
  Settle();
  EXPECT_EQ(report.GetItemAt(1, 1)->GetCaption(), "plum");
  EXPECT_EQ(owner.Take(), "edit 1,1; ");
  // By mouse; a refill closes the editor.
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, TextAt(0, 1));
  Settle();
  const QPointer<QLineEdit> second = view->viewport()->findChild<QLineEdit*>();
  ASSERT_NE(second, nullptr);
  report.RemoveAllRecords();
  Settle();
  EXPECT_TRUE(second.isNull());
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, QPoint(60, 8));
}

TEST_F(ReportPeerTest, ManyRowsAreLaidOutTogetherAndKeepTheirPlace) {
  // A layout covers all rows and changes the range of the scroll bar.
  QSignalSpy layouts(view->verticalScrollBar(), &QScrollBar::rangeChanged);
  for (int i = 0; i < 10'000; ++i) {
    Add("row " + std::to_string(i), "x.c");
    report.PopulateAdded();
  }
  EXPECT_EQ(layouts.count(), 0);
  EXPECT_TRUE(QTest::qWaitFor([&layouts] { return layouts.count() > 0; }));
  ASSERT_EQ(view->model()->rowCount(), 10'003);
  report.SelectRow(5'000);
  EXPECT_TRUE(view->viewport()->rect().contains(CellAt(5'000, 1)));
  EXPECT_EQ(report.HitTest({150, 1}).row, report.GetTopRow());
  view->verticalScrollBar()->setValue(70);
  EXPECT_EQ(report.GetTopRow(), 70);
  // Each new row of a sorted report changes the order. The model tester would check all rows each
  // time.
  tester.reset();
  report.GetReportHeader().NotifyClicked(1);
  layouts.clear();
  for (int i = 0; i < 1'000; ++i) {
    Add("a row", "x.c");
    report.PopulateAdded();
  }
  EXPECT_EQ(layouts.count(), 0);
  EXPECT_TRUE(QTest::qWaitFor([&layouts] { return layouts.count() > 0; }));
  EXPECT_EQ(view->verticalScrollBar()->value(), 70);
  report.GetColumns().SetSortColumn(nullptr, true);
  report.Populate();
  // A page is the number of visible rows.
  const int perPage =
      view->viewport()->height() / view->visualRect(view->indexAt({60, 1})).height();
  QTest::keyClick(view, Qt::Key_PageDown);
  EXPECT_EQ(report.GetFocusedRow(), 5'000 + perPage);
  QTest::keyClick(view, Qt::Key_End);
  EXPECT_EQ(view->verticalScrollBar()->value(), view->verticalScrollBar()->maximum());
  EXPECT_EQ(report.GetTopRow(), view->verticalScrollBar()->value());
  view->grab();
}

TEST_F(ReportPeerTest, MayBeDestroyedInItsEventsAndLivesOnWithoutItsView) {
  const QPointer<QTreeView> watched = view;
  owner.onNotified = [this] { report.DestroyWindow(); };
  Click(CellAt(1, 1));
  EXPECT_FALSE(report.IsCreated());
  EXPECT_EQ(view->model()->rowCount(), 0);
  tester.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(watched.isNull());

  // The view is destroyed inside a nested loop of the handler, such as that of a dialog.
  report.Create(kStyleChild | kStyleVisible, {0, 0, 400, 200}, &owner, 7);
  view = WidgetOf(report)->findChild<QTreeView*>();
  Settle();
  const QPointer<QTreeView> second = view;
  owner.onNotified = [&] {
    QEventLoop inner;
    QTimer::singleShot(0, &inner, [this] { report.DestroyWindow(); });
    QTimer::singleShot(20, &inner, &QEventLoop::quit);
    inner.exec();
    EXPECT_TRUE(second.isNull());
  };
  QTest::mousePress(view->viewport(), Qt::LeftButton, {}, CellAt(0, 1));
  EXPECT_FALSE(report.IsCreated());

  owner.onNotified = nullptr;
  report.Create(kStyleChild | kStyleVisible, {0, 0, 400, 200}, &owner, 7);
  delete WidgetOf(report);
  Add("late", "x.c");
  report.PopulateAdded();
  report.GetReportHeader().NotifyClicked(1);
  report.SelectRow(3);
  EXPECT_EQ(report.GetFocusedRow(), 3);
}

}  // namespace
}  // namespace tarn
