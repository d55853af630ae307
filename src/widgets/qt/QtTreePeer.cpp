#include "widgets/qt/QtTreePeer.h"

#include "widgets/qt/QtText.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

constexpr double kDragOpacity = 0.75;

}  // namespace

QtTreePeer::QtTreePeer(CTreeCtrl& shownTree)
    : WidgetPeer(shownTree, new TreeView(shownTree)), tree(shownTree) {
  new WindowInput(tree, *widget, kInputFocus | kInputKeys);
  new WindowInput(tree, *widget->viewport(), kInputSize | kInputMouse | kInputFileDrops);
  widget->viewport()->installEventFilter(widget);
  QtTreePeer::OnTextChanged();
}

QtTreePeer::~QtTreePeer() {
  if (widget != nullptr) widget->Detach();
}

void QtTreePeer::OnMoved() {
  WidgetPeer::OnMoved();
  if (widget != nullptr) widget->AskToTellState();
}

void QtTreePeer::OnTextChanged() {
  WidgetPeer::OnTextChanged();
  if (widget != nullptr) widget->setAccessibleName(ToQt(tree.GetControlText()));
}

// The images may have been replaced by ones of another size.
void QtTreePeer::OnInvalidated() {
  if (widget == nullptr) return;
  widget->FollowMeasures();
  widget->viewport()->update();
}

void QtTreePeer::OnResetting() {
  if (widget != nullptr) widget->FollowResetting();
}

void QtTreePeer::OnReset() {
  if (widget != nullptr) widget->FollowReset();
}

void QtTreePeer::OnItemsInserting(const CTreeItem* parent, int first, int count) {
  if (widget != nullptr) widget->Model().BeginInsert(parent, first, count);
}

void QtTreePeer::OnItemsInserted(const CTreeItem* parent, int first, int count) {
  if (widget != nullptr) widget->FollowInserted(parent, first, count);
}

void QtTreePeer::OnItemsRemoving(const CTreeItem* parent, int first, int count) {
  if (widget != nullptr) widget->Model().BeginRemove(parent, first, count);
}

void QtTreePeer::OnItemsRemoved(const CTreeItem* parent, int /*first*/, int /*count*/) {
  if (widget != nullptr) widget->FollowRemoved(parent);
}

void QtTreePeer::OnItemChanged(const CTreeItem& item) {
  if (widget != nullptr) widget->Model().TellChanged(item);
}

void QtTreePeer::OnItemExpanded(const CTreeItem& item) {
  if (widget != nullptr) widget->FollowExpansion(item);
}

void QtTreePeer::OnSelectionChanged() {
  if (widget != nullptr) widget->FollowSelection();
}

void QtTreePeer::OnDropHighlightChanged() {
  if (widget != nullptr) widget->viewport()->update();
}

void QtTreePeer::OnScrolled() {
  if (widget != nullptr) widget->FollowScroll();
}

bool QtTreePeer::OnDragBegun(const CTreeItem& item, Point hotSpot, Point screen) {
  if (widget == nullptr) return false;
  dragged = std::make_unique<QLabel>(nullptr, Qt::ToolTip | Qt::FramelessWindowHint |
                                                  Qt::WindowTransparentForInput |
                                                  Qt::WindowDoesNotAcceptFocus);
  // Opaque background: not every desktop supports transparent windows.
  dragged->setPalette(widget->palette());
  dragged->setBackgroundRole(QPalette::Base);
  dragged->setAutoFillBackground(true);
  dragged->setAttribute(Qt::WA_ShowWithoutActivating);
  dragged->setWindowOpacity(kDragOpacity);
  dragged->setPixmap(widget->Delegate().PictureOf(item));
  dragged->adjustSize();
  dragSpot = QPoint(hotSpot.x, hotSpot.y);
  OnDragMoved(screen);
  dragged->show();
  return true;
}

void QtTreePeer::OnDragMoved(Point screen) {
  if (dragged != nullptr) dragged->move(QPoint(screen.x, screen.y) - dragSpot);
}

void QtTreePeer::OnDragEnded() {
  dragged.reset();
}

int QtTreePeer::GetLineHeight() {
  return widget == nullptr ? kTreeLineHeight : widget->Delegate().LineHeight();
}

std::optional<TreeHit> QtTreePeer::HitTest(Point point) {
  if (widget == nullptr) return std::nullopt;
  return widget->HitAt(point);
}

std::optional<Rect> QtTreePeer::GetTextRect(const CTreeItem& item) {
  if (widget == nullptr) return std::nullopt;
  return widget->TextRectOf(item);
}

}  // namespace tarn
