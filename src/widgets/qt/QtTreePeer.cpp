#include "widgets/qt/QtTreePeer.h"

#include "widgets/qt/QtText.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

constexpr double kDragOpacity = 0.75;

}  // namespace

QtTreePeer::QtTreePeer(CTreeCtrl& shownTree)
    : WidgetPeer(shownTree, new TreeView(shownTree)), tree_(shownTree) {
  new WindowInput(tree_, *widget, kInputFocus | kInputKeys);
  new WindowInput(tree_, *widget->viewport(), kInputSize | kInputMouse | kInputFileDrops);
  widget->viewport()->installEventFilter(widget);
  QtTreePeer::OnTextChanged();
}

QtTreePeer::~QtTreePeer() {
  if (widget != nullptr) widget->Detach();
}

void QtTreePeer::OnMoved() {
  WidgetPeer::OnMoved();
  if (widget != nullptr) widget->ScheduleNotifyState();
}

void QtTreePeer::OnTextChanged() {
  WidgetPeer::OnTextChanged();
  if (widget != nullptr) widget->setAccessibleName(ToQt(tree_.GetControlText()));
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
  if (widget != nullptr) widget->Model().NotifyChanged(item);
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
  dragged_ = std::make_unique<QLabel>(nullptr, Qt::ToolTip | Qt::FramelessWindowHint |
                                                   Qt::WindowTransparentForInput |
                                                   Qt::WindowDoesNotAcceptFocus);
  // Opaque background: not every desktop supports transparent windows.
  dragged_->setPalette(widget->palette());
  dragged_->setBackgroundRole(QPalette::Base);
  dragged_->setAutoFillBackground(true);
  dragged_->setAttribute(Qt::WA_ShowWithoutActivating);
  dragged_->setWindowOpacity(kDragOpacity);
  dragged_->setPixmap(widget->Delegate().PictureOf(item));
  dragged_->adjustSize();
  dragSpot_ = QPoint(hotSpot.x, hotSpot.y);
  OnDragMoved(screen);
  dragged_->show();
  return true;
}

void QtTreePeer::OnDragMoved(Point screen) {
  if (dragged_ != nullptr) dragged_->move(QPoint(screen.x, screen.y) - dragSpot_);
}

void QtTreePeer::OnDragEnded() {
  dragged_.reset();
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
