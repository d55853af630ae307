#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTreeView>
#include <QUrl>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "support/TestEnvironment.h"
#include "widgets/Edit.h"
#include "widgets/TipWindow.h"
#include "widgets/TreeCtrl.h"
#include "widgets/qt/ImageCache.h"
#include "widgets/qt/QtToolkit.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {
namespace {

class TalkingTree : public CTreeCtrl {
 public:
  ~TalkingTree() override { DestroyWindow(); }
  using CTreeCtrl::BeginDragImage;
  using CTreeCtrl::EndDragImage;
  using CTreeCtrl::MoveDragImage;

  std::function<void()> whenSelected;
  std::vector<std::string> selections;
  int menus = 0;
  std::vector<TreeHit> activated;
  std::vector<int> keys;
  std::vector<std::string> dropped;
  std::string remark;  // drawn after each label
  mutable std::vector<const CTreeItem*> drawn;

 protected:
  PaintCommands OnDrawItem(const CTreeItem& item, const TreeItemPaint& paint) const override {
    drawn.push_back(&item);
    const Rect label = GetTextRect(item);
    const Rect behind{label.right, label.top, label.right + 1, label.bottom};
    return {PaintFill{paint.rect, paint.background}, PaintImage{GetImageList(), 0, {0, 0}},
            PaintText{label, item.GetText(), GetFont(), paint.foreground},
            PaintText{behind, remark, GetFont(), paint.foreground}};
  }
  void OnItemActivated(Point point) override { activated.push_back(HitTest(point)); }
  bool OnItemKey(const KeyEvent& event) override {
    keys.push_back(event.key);
    return false;
  }
  void OnSelectionChanged() override {
    selections.push_back(GetSelectedItem() ? GetSelectedItem()->GetText() : "nothing");
    if (whenSelected) whenSelected();
  }
  bool OnContextMenu(Point) override { return ++menus > 0; }
  void OnDropFiles(const std::vector<std::string>& paths) override { dropped = paths; }
};

QPoint MiddleOf(const Rect& rect) {
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

void AddTo(std::string& text, const QAbstractItemModel& model, const QModelIndex& above) {
  for (int i = 0; i < model.rowCount(above); ++i) {
    const QModelIndex index = model.index(i, 0, above);
    text += (i == 0 ? "" : " ") + FromQt(index.data().toString());
    if (!model.hasChildren(index)) continue;
    text += "(";
    AddTo(text, model, index);
    text += ")";
  }
}

struct TreePeerTest : ::testing::Test {
  TreePeerTest() {
    tree.Create(kStylePopup | kTreeHasButtons | kTreeLinesAtRoot, {0, 0, 240, 160}, nullptr, 0);
    view = qobject_cast<QTreeView*>(WidgetOf(tree));
    tester = std::make_unique<QAbstractItemModelTester>(
        view->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    view->resize(240, 160);
    view->show();
    fruit = &tree.InsertItem(nullptr, "fruit", -1, -1, nullptr);
    apple = &tree.InsertItem(fruit, "apple", -1, -1, nullptr);
    tree.InsertItem(fruit, "pear", -1, -1, nullptr);
    roots = &tree.InsertItem(nullptr, "roots", -1, -1, nullptr);
    Settle();
  }

  static void Settle() { QTest::qWait(20); }
  std::string Shown() const {
    std::string text;
    AddTo(text, *view->model(), {});
    return text;
  }
  bool IsOpen(const CTreeItem& item) const {
    return view->isExpanded(view->model()->index(item.GetIndex(), 0));
  }
  void Click(const QPoint& place, Qt::MouseButton button = Qt::LeftButton) const {
    QTest::mouseClick(view->viewport(), button, {}, place);
  }
  CTreeItems Many(int count) const {
    CTreeItems items;
    for (int i = 0; i < count; ++i) {
      items.push_back(std::make_unique<CTreeItem>("line " + std::to_string(i), -1, -1, nullptr));
    }
    return items;
  }

  QtToolkit toolkit;
  TalkingTree tree;
  QTreeView* view = nullptr;
  std::unique_ptr<QAbstractItemModelTester> tester;
  CTreeItem* fruit = nullptr;
  CTreeItem* apple = nullptr;
  CTreeItem* roots = nullptr;
};

TEST_F(TreePeerTest, MouseAndKeysGoThroughTheControl) {
  const Rect label = tree.GetTextRect(*fruit);
  Click({label.left - view->indentation() / 2, MiddleOf(label).y()});
  EXPECT_TRUE(fruit->IsExpanded());
  EXPECT_TRUE(IsOpen(*fruit));
  EXPECT_TRUE(tree.selections.empty());

  Click(MiddleOf(tree.GetTextRect(*apple)));
  EXPECT_EQ(tree.GetSelectedItem(), apple);
  EXPECT_EQ(view->currentIndex().data().toString(), "apple");
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_Home, Qt::Key_Left}) {
    QTest::keyClick(view, key);
  }
  EXPECT_EQ(tree.selections, (std::vector<std::string>{"apple", "pear", "roots", "fruit"}));
  EXPECT_FALSE(IsOpen(*fruit));
  EXPECT_EQ(view->currentIndex().data().toString(), "fruit");

  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, MiddleOf(label));
  EXPECT_TRUE(IsOpen(*fruit));
  Click(MiddleOf(label), Qt::RightButton);
  EXPECT_EQ(tree.menus, 1);
}

TEST_F(TreePeerTest, KeysMeanWhatIsOnThem) {
  tree.SelectItem(fruit);
  for (const Qt::Key key : {Qt::Key_X, Qt::Key_5, Qt::Key_Delete, Qt::Key_Period, Qt::Key_Minus,
                            Qt::Key_ParenLeft, Qt::Key_Return}) {
    QTest::keyClick(view, key);
  }
  for (const auto with : {Qt::AltModifier, Qt::MetaModifier}) {
    QTest::keyClick(view, Qt::Key_Delete, with);
  }
  EXPECT_EQ(tree.keys, (std::vector<int>{'X', '5', kKeyDelete, 0, 0, 0, kKeyEnter}));
  EXPECT_EQ(tree.GetSelectedItem(), fruit);
  EXPECT_EQ(tree.activated, (std::vector<TreeHit>{{fruit, TreePart::Label}}));

  QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(view, &menu);
  EXPECT_EQ(tree.menus, 1);
}

TEST_F(TreePeerTest, LettersFindTheNextLineThatBeginsWithThemOrElseHasThem) {
  tree.InsertItem(fruit, "plum pie", -1, -1, nullptr);
  tree.InsertItem(fruit, "\xC3\xA4pfel", -1, -1, nullptr);
  const struct {
    const char* typed;
    const char* selected;
  } kCases[] = {{"p", "pear"},   {"pp", "pear"}, {"ppp", "plum pie"}, {"PLUM P", "plum pie"},
                {"ro", "roots"}, {"x", "roots"}, {"ple", "apple"},    {"\xC3\xA4", "\xC3\xA4pfel"}};
  for (const auto& each : kCases) {
    for (const QChar letter : QString::fromUtf8(each.typed)) {
      QTest::sendKeyEvent(QTest::Click, view, Qt::Key_unknown, QString(letter), {});
    }
    EXPECT_EQ(tree.GetSelectedItem()->GetText(), each.selected) << each.typed;
    EXPECT_TRUE(IsOpen(*fruit)) << "where what was found is";
    QTest::qWait(QApplication::keyboardInputInterval() + 20);
  }
}

TEST_F(TreePeerTest, DroppedFilesAreToldWhenTheDropIsOver) {
  QMimeData files;
  files.setUrls({QUrl("https://example.invalid/x"), QUrl::fromLocalFile("/tmp/a b.c")});
  const auto isTaken = [&] {
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QApplication::sendEvent(view->viewport(), &enter);
    QDropEvent drop({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QApplication::sendEvent(view->viewport(), &drop);
    EXPECT_TRUE(tree.dropped.empty());
    Settle();
    return enter.isAccepted();
  };
  EXPECT_FALSE(isTaken());
  tree.AcceptDroppedFiles(true);
  EXPECT_TRUE(isTaken());
  EXPECT_EQ(tree.dropped, std::vector<std::string>{"/tmp/a b.c"});
}

TEST_F(TreePeerTest, AFieldInTheTreeHasItsKeysForItselfAndGivesTheKeyboardBack) {
  view->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(view));
  CEdit field;
  const auto open = [&] {
    ASSERT_TRUE(field.Create(kStyleChild | kStyleVisible, {0, 0, 80, 20}, &tree, 1));
    field.SetFocus();
    ASSERT_EQ(QApplication::focusWidget(), WidgetOf(field));
  };
  open();
  QTest::keyClick(WidgetOf(field), Qt::Key_Insert);
  QTest::keyClick(WidgetOf(field), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_TRUE(tree.keys.empty());
  field.DestroyWindow();
  EXPECT_TRUE(tree.HasFocus());
  EXPECT_EQ(QApplication::focusWidget(), view);

  open();
  tree.DestroyWindow();
  EXPECT_FALSE(tree.HasFocus());
  tester.reset();
}

TEST_F(TreePeerTest, AFieldOverALabelGoesAlongWithIt) {
  tree.InsertItems(nullptr, 2, Many(200));
  const CTreeItem& line = *tree.GetRows().GetAt(4);
  tree.remark = std::string(200, 'w');
  Settle();
  ASSERT_GT(view->horizontalScrollBar()->maximum(), 10);
  CEdit field;
  ASSERT_TRUE(field.Create(kStyleChild | kStyleVisible, tree.GetTextRect(line), &tree, 1));
  const auto offset = [&] {
    const QWidget& shown = *WidgetOf(field);
    const Rect label = tree.GetTextRect(line);
    const QPoint corner = view->viewport()->mapToGlobal(QPoint(label.left, label.top));
    return corner - shown.mapToGlobal(QPoint(0, 0));
  };
  EXPECT_EQ(offset(), QPoint());
  for (const int top : {3, 1, 120, 0}) {
    view->verticalScrollBar()->setValue(top);
    view->horizontalScrollBar()->setValue(top % 7);
    EXPECT_EQ(offset(), QPoint()) << top;
  }
}

TEST_F(TreePeerTest, PartsOfALineAreWhereTheyArePainted) {
  const CImageList images({16, 16});
  tree.SetImageList(&images);
  tree.Expand(*fruit, true);
  QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  const Rect label = tree.GetTextRect(*apple);
  const int y = (label.top + label.bottom) / 2;
  const struct {
    int x;
    TreePart part;
  } kCases[] = {
      {1, TreePart::Indent},
      {label.left - 1, TreePart::Icon},
      {label.left, TreePart::Label},
      {label.right - 1, TreePart::Label},
      {label.right, TreePart::RightOfLabel},
      {view->viewport()->width() - 1, TreePart::RightOfLabel},
  };
  for (const auto& each : kCases) {
    EXPECT_EQ(tree.HitTest({each.x, y}), (TreeHit{apple, each.part})) << each.x;
  }
  EXPECT_EQ(tree.HitTest({5, 159}), TreeHit{});
  EXPECT_EQ(label.Height(), tree.GetLineHeight());
  QGuiApplication::setLayoutDirection(Qt::LayoutDirectionAuto);
  tree.SetImageList(nullptr);
  EXPECT_LT(tree.GetTextRect(*apple).left, label.left);
}

TEST_F(TreePeerTest, ModelMirrorsTheItems) {
  EXPECT_EQ(Shown(), "fruit(apple pear) roots");
  CTreeItems items = Many(1);
  items[0]->AppendChild(std::make_unique<CTreeItem>("below", -1, -1, nullptr));
  items[0]->SetExpanded(true);
  tree.InsertItems(nullptr, 1, std::move(items));
  EXPECT_EQ(Shown(), "fruit(apple pear) line 0(below) roots");
  EXPECT_TRUE(IsOpen(*tree.GetItemAt(nullptr, 1)));

  // A parent whose children have all been removed does not expand by itself later.
  tree.Expand(*fruit, true);
  tree.SelectItem(apple);
  tree.DeleteItems(fruit, 0, 2);
  EXPECT_FALSE(view->currentIndex().isValid());
  tree.InsertItem(fruit, "plum", -1, -1, nullptr);
  EXPECT_FALSE(IsOpen(*fruit));
  EXPECT_EQ(Shown(), "fruit(plum) line 0(below) roots");

  tree.SetRedraw(false);
  tree.DeleteAllItems();
  CTreeItem& only = tree.InsertItem(nullptr, "only", -1, -1, nullptr);
  tree.InsertItem(&only, "child", -1, -1, nullptr);
  tree.SelectItem(tree.GetItemAt(&only, 0));
  tree.SetRedraw(true);
  EXPECT_EQ(Shown(), "only(child)");
  EXPECT_TRUE(IsOpen(only));
  EXPECT_EQ(view->currentIndex().data().toString(), "child");
  tree.SetItem(only, "named anew", -1, -1);
  EXPECT_EQ(Shown(), "named anew(child)");
}

TEST_F(TreePeerTest, ScrollingGoesBothWays) {
  tree.InsertItems(nullptr, 2, Many(200));
  tree.SetTopRow(50);
  EXPECT_EQ(view->verticalScrollBar()->value(), 50);
  EXPECT_EQ(tree.HitTest({view->viewport()->width() - 1, 1}).item, tree.GetRows().GetAt(50));
  view->verticalScrollBar()->setValue(20);
  EXPECT_EQ(tree.GetTopRow(), 20);
  tree.drawn.clear();
  view->grab();
  const int height = tree.GetLineHeight();
  ASSERT_EQ(std::ssize(tree.drawn), (view->viewport()->height() + height - 1) / height);
  EXPECT_EQ(tree.drawn.front(), tree.GetRows().GetAt(20));
  CTreeItem& last = *tree.GetItemAt(nullptr, 201);
  tree.SelectItem(&last);
  EXPECT_TRUE(view->viewport()->rect().contains(MiddleOf(tree.GetTextRect(last))));

  // The view never scrolls past the last line, and the top line is adjusted when lines are removed.
  tree.SetTopRow(201);
  Settle();
  EXPECT_EQ(tree.GetTopRow(), view->verticalScrollBar()->value());
  EXPECT_LT(tree.GetTopRow(), 201);
  tree.DeleteItems(nullptr, 2, 200);
  Settle();
  EXPECT_EQ(tree.GetTopRow(), 0);

  // A line wider than the window can be scrolled to its end; scroll bars reduce the client area.
  tree.InsertItem(nullptr, std::string(200, 'w'), -1, -1, nullptr);
  Settle();
  EXPECT_GT(view->horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(tree.GetClientRect().Height(), view->viewport()->height());
}

TEST_F(TreePeerTest, WhatIsDrawnAfterTheLabelsCanBeScrolledTo) {
  const QScrollBar& bar = *view->horizontalScrollBar();
  ASSERT_EQ(bar.maximum(), 0);
  tree.remark = std::string(200, 'w');
  tree.Invalidate();
  Settle();
  const int wide = bar.maximum();
  EXPECT_GT(wide, view->fontMetrics().horizontalAdvance('w') * 200 - view->width());
  tree.SetItem(*fruit, "fruit and vegetables", -1, -1);
  Settle();
  EXPECT_GT(bar.maximum(), wide);
  tree.remark.clear();
  tree.Invalidate();
  Settle();
  EXPECT_EQ(bar.maximum(), 0);
}

TEST_F(TreePeerTest, EventsMayRunWhileItIsRefilled) {
  tree.InsertItems(nullptr, 2, Many(200));
  tree.SetTopRow(50);
  Settle();
  tree.SetRedraw(false);
  tree.DeleteItems(nullptr, 0, 100);
  view->resize(230, 150);
  Settle();
  EXPECT_EQ(tree.HitTest({30, 5}), TreeHit{});
  tree.SetRedraw(true);
  Settle();
  EXPECT_EQ(tree.GetTopRow(), 50);
  EXPECT_EQ(view->verticalScrollBar()->value(), 50);
}

TEST_F(TreePeerTest, MayBeDestroyedInItsEvents) {
  const QPointer<QTreeView> watched = view;
  tree.whenSelected = [&] { tree.DestroyWindow(); };
  Click(MiddleOf(tree.GetTextRect(*roots)));
  EXPECT_FALSE(tree.IsCreated());
  EXPECT_EQ(view->model()->rowCount(), 0);
  tester.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(watched.isNull());
}

TEST_F(TreePeerTest, LivesOnWithoutItsView) {
  tester.reset();
  delete view;
  tree.InsertItem(roots, "carrot", -1, -1, nullptr);
  tree.SelectItem(tree.GetItemAt(roots, 0));
  tree.SetTopRow(1);
  EXPECT_EQ(tree.GetRows().GetCount(), 3);
  EXPECT_FALSE(tree.BeginDragImage(*roots, {}, {}));
  CEdit field;
  ASSERT_TRUE(field.Create(kStyleChild | kStyleVisible, {0, 0, 80, 20}, &tree, 1));
  EXPECT_FALSE(WidgetOf(field)->isVisible());
}

TEST_F(TreePeerTest, PictureOfADraggedItemFollowsTheCursor) {
  ASSERT_TRUE(tree.BeginDragImage(*fruit, {4, 4}, {10, 10}));
  tree.MoveDragImage({30, 50});
  const QPoint cursor = view->viewport()->mapToGlobal(QPoint(30, 50));
  const auto countShown = [&] {
    int shown = 0;
    for (const QWidget* const each : QApplication::topLevelWidgets()) {
      if (each->isVisible() && each != view && each->pos() == cursor - QPoint(4, 4)) ++shown;
    }
    return shown;
  };
  EXPECT_EQ(countShown(), 1);
  tree.EndDragImage();
  EXPECT_EQ(countShown(), 0);
}

TEST_F(TreePeerTest, TipStandsOverTheTreeAndOnTheScreen) {
  CTipWindow tip;
  ASSERT_TRUE(tip.Create(&tree));
  const QWidget* const shown = WidgetOf(tip);
  view->move(100, 80);
  EXPECT_FALSE(shown->isVisible());
  tip.ShowTip("fruit", "grows\non trees", {30, 40}, {}, {});
  EXPECT_TRUE(shown->isVisible());
  EXPECT_EQ(shown->pos(), view->viewport()->mapToGlobal(QPoint(30, 40)));
  tip.ShowTip("fruit", std::string(20, 'w'), {100000, 100000}, {}, {});
  EXPECT_TRUE(shown->screen()->availableGeometry().contains(shown->geometry()));

  const int narrow = shown->width();
  const int low = shown->height();
  for (const char* const part : {"grows on trees ", "/without/a/blank"}) {
    std::string text;
    for (int i = 0; i < 40; ++i) text += part;
    tip.ShowTip("fruit", text, {30, 40}, {}, {});
    EXPECT_LT(shown->width(), 4 * narrow) << part;
    EXPECT_GT(shown->height(), 3 * low) << part;
  }
  tip.Hide();
  EXPECT_FALSE(shown->isVisible());
}

// Two images of 2 x 1: red and magenta, magenta and blue.
TEST(ImageCacheTest, CutsPicturesAndLetsTheBackgroundThrough) {
  std::string bytes = "BM";
  const auto number = [&](std::uint32_t value, int width) {
    for (int i = 0; i < width; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
  };
  for (const std::uint32_t value : {66U, 0U, 54U, 40U, 4U, 1U}) number(value, 4);
  for (const std::uint32_t value : {1U, 24U}) number(value, 2);
  for (const std::uint32_t value : {0U, 12U, 0U, 0U, 0U, 0U}) number(value, 4);
  for (const std::uint32_t value : {0xFF0000U, 0xFF00FFU, 0xFF00FFU, 0x0000FFU}) number(value, 3);
  CImageList images({2, 1});
  ASSERT_EQ(images.Add(ReadBitmap(bytes)), 0);
  ASSERT_EQ(images.Add(ReadBitmap(bytes.substr(0, 54))), 2);  // has no pixels

  ImageCache cache;
  const QImage first = cache.Get(images, 0).toImage();
  const QImage second = cache.Get(images, 1).toImage();
  EXPECT_EQ(first.size(), QSize(2, 1));
  EXPECT_EQ(first.pixelColor(0, 0), QColor(Qt::red));
  EXPECT_EQ(first.pixelColor(1, 0).alpha(), 0);
  EXPECT_EQ(second.pixelColor(0, 0).alpha(), 0);
  EXPECT_EQ(second.pixelColor(1, 0), QColor(Qt::blue));
  EXPECT_TRUE(cache.Get(images, 4).isNull());

  // A vector drawing next to the file is rendered at the screen's resolution.
  const testing::ScratchFolder folder;
  folder.Write("a.bmp", bytes);
  folder.Write("a-1.svg",
               "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 2 1\"><rect "
               "width=\"2\" height=\"1\" fill=\"#00ff00\"/></svg>");
  CImageList drawn({2, 1});
  ASSERT_EQ(drawn.Add(ReadBitmapFile(FileSystem::Native(), folder / "a.bmp")), 0);
  EXPECT_EQ(cache.Get(drawn, 0, 2).toImage().pixelColor(0, 0), QColor(Qt::red));
  const QImage sharp = cache.Get(drawn, 1, 2).toImage();
  EXPECT_EQ(sharp.size(), QSize(4, 2));
  EXPECT_EQ(sharp.devicePixelRatio(), 2);
  EXPECT_EQ(sharp.pixelColor(3, 1), QColor("#00ff00"));
  EXPECT_TRUE(cache.Get(images, -1).isNull());

  const std::weak_ptr<const Bitmap> bitmap = images.GetStrips()[0].bitmap;
  images = CImageList({2, 1});
  EXPECT_TRUE(bitmap.expired()) << "kept by the cache";
}

}  // namespace
}  // namespace tarn
