#include "widgets/TreeCtrl.h"

#include <algorithm>
#include <iterator>

#include "widgets/Toolkit.h"

namespace tarn {

namespace {

// Metrics of a tree without a peer.
constexpr int kIndent = 19;
constexpr int kImageGap = 3;  // between image and label

// Returns whether an event handler has destroyed the control that had this handle, 0 if none.
bool IsDestroyed(WindowHandle own) {
  return own != 0 && !IsWindow(own);
}

// Left edge of an item's image.
int ImageLeft(std::uint32_t style, const CTreeItem& item) {
  const bool atRoot = (style & kTreeLinesAtRoot) != 0;
  return (item.GetLevel() + (atRoot ? 1 : 0)) * kIndent;
}

int ImageWidth(const CImageList* images) {
  return images == nullptr ? 0 : images->GetImageSize().width + kImageGap;
}

bool IsShownSelected(const CTreeCtrl& tree, const CTreeItem& item) {
  if (&item == tree.GetDropHighlight()) return true;
  return &item == tree.GetSelectedItem() &&
         (tree.HasFocus() || (tree.GetStyle() & kTreeShowsSelectionAlways) != 0);
}

}  // namespace

CTreeCtrl::CTreeCtrl() {
  top_.isTop_ = true;
  top_.isExpanded_ = true;
}

CTreeCtrl::~CTreeCtrl() {
  DestroyWindow();
}

TreePeer* CTreeCtrl::Listener() {
  TreePeer* const listener = Peer();
  if (!isRedrawOff_ || listener == nullptr) return listener;
  if (!isResetDue_) listener->OnResetting();
  isResetDue_ = true;
  return nullptr;
}

void CTreeCtrl::SetRedraw(bool redraw) {
  isRedrawOff_ = !redraw;
  if (isRedrawOff_ || !isResetDue_) return;
  isResetDue_ = false;
  shownSelection_ = selected_;
  if (TreePeer* const listener = Peer()) listener->OnReset();
}

CTreeItem& CTreeCtrl::InsertItem(CTreeItem* above, std::string label, int image, int selectedImage,
                                 void* data) {
  CTreeItems items;
  items.push_back(std::make_unique<CTreeItem>(std::move(label), image, selectedImage, data));
  CTreeItem& item = *items.front();
  InsertItems(above, ParentOf(above).GetChildCount(), std::move(items));
  return item;
}

void CTreeCtrl::InsertItems(CTreeItem* above, int first, CTreeItems items) {
  if (items.empty()) return;
  CTreeItem& list = ParentOf(above);
  first = std::clamp(first, 0, list.GetChildCount());
  const int count = static_cast<int>(items.size());
  TreePeer* const listener = Listener();
  if (listener != nullptr) listener->OnItemsInserting(above, first, count);
  list.children_.insert(list.children_.begin() + first, std::make_move_iterator(items.begin()),
                        std::make_move_iterator(items.end()));
  list.NumberChildren(first);
  rows_.InvalidateAfter(list.BeforeChild(first));
  if (listener != nullptr) listener->OnItemsInserted(above, first, count);
}

void CTreeCtrl::DeleteItems(CTreeItem* above, int first, int count) {
  DiscardItems(TakeItems(above, first, count));
}

void CTreeCtrl::DeleteAllItems() {
  DeleteItems(nullptr, 0, top_.GetChildCount());
  topRow_ = 0;
}

CTreeItems CTreeCtrl::TakeItems(CTreeItem* above, int first, int count) {
  CTreeItem& list = ParentOf(above);
  first = std::clamp(first, 0, list.GetChildCount());
  count = std::clamp(count, 0, list.GetChildCount() - first);
  CTreeItems taken;
  if (count == 0) return taken;
  TreePeer* const listener = Listener();
  if (listener != nullptr) listener->OnItemsRemoving(above, first, count);
  LetGo(list, first, count);
  const auto begin = list.children_.begin() + first;
  taken.assign(std::make_move_iterator(begin), std::make_move_iterator(begin + count));
  list.children_.erase(begin, begin + count);
  list.NumberChildren(first);
  for (const std::unique_ptr<CTreeItem>& item : taken) item->parent_ = nullptr;
  if (!list.isTop_) list.isExpanded_ = list.isExpanded_ && list.HasChildren();
  rows_.InvalidateAfter(list.BeforeChild(first));
  if (listener != nullptr) listener->OnItemsRemoved(above, first, count);
  return taken;
}

// Clears pointers to the items being removed and to their descendants.
void CTreeCtrl::LetGo(const CTreeItem& above, int first, int count) {
  for (CTreeItem** const held : {&selected_, &shownSelection_, &dropHighlight_}) {
    const CTreeItem* item = *held;
    while (item != nullptr && item->parent_ != &above) item = item->parent_;
    if (item != nullptr && item->index_ >= first && item->index_ < first + count) *held = nullptr;
  }
}

void CTreeCtrl::DiscardItems(CTreeItems&& items) {
  const CTreeItems gone = std::move(items);
  for (const std::unique_ptr<CTreeItem>& item : gone) NotifyItemDeleted(*item);
}

void CTreeCtrl::NotifyItemDeleted(const CTreeItem& item) {
  for (const std::unique_ptr<CTreeItem>& child : item.children_) NotifyItemDeleted(*child);
  OnItemGone(item);
}

bool CTreeCtrl::SetItem(CTreeItem& item, std::string_view label, int image, int selectedImage) {
  if (item.text_ == label && item.image_ == image && item.selectedImage_ == selectedImage) {
    return false;
  }
  TreePeer* const listener = Listener();
  item.text_ = label;
  item.image_ = image;
  item.selectedImage_ = selectedImage;
  if (listener != nullptr) listener->OnItemChanged(item);
  return true;
}

int CTreeCtrl::GetItemCount(const CTreeItem* above) const {
  return (above == nullptr ? top_ : *above).GetChildCount();
}

CTreeItem* CTreeCtrl::GetItemAt(const CTreeItem* above, int at) const {
  return (above == nullptr ? top_ : *above).GetChild(at);
}

void CTreeCtrl::SelectItem(CTreeItem* item) {
  const WindowHandle own = GetHandle();
  if (item != nullptr) EnsureVisible(*item);
  if (!IsDestroyed(own)) ChooseItem(item);
}

void CTreeCtrl::ChooseItem(CTreeItem* item) {
  if (item == selected_) return;
  selected_ = item;
  NotifySelection();
  OnSelectionChanged();
}

void CTreeCtrl::NotifySelection() {
  if (shownSelection_ == selected_) return;
  TreePeer* const listener = Listener();
  shownSelection_ = selected_;
  if (listener != nullptr) listener->OnSelectionChanged();
}

void CTreeCtrl::Expand(CTreeItem& item, bool expand) {
  if (!item.HasChildren() || item.isExpanded_ == expand) return;
  TreePeer* const listener = Listener();
  item.isExpanded_ = expand;
  rows_.InvalidateAfter(item);
  if (listener != nullptr) listener->OnItemExpanded(item);
  const WindowHandle own = GetHandle();
  OnItemExpanded(item);
  if (IsDestroyed(own)) return;
  if (!expand && selected_ != nullptr && selected_->IsBelow(item)) SelectItem(&item);
}

void CTreeCtrl::SetDropHighlight(CTreeItem* item) {
  if (dropHighlight_ == item) return;
  TreePeer* const listener = Listener();
  dropHighlight_ = item;
  if (listener != nullptr) listener->OnDropHighlightChanged();
}

int CTreeCtrl::GetTopRow() const {
  return std::max(0, std::min(topRow_, rows_.GetCount() - 1));
}

void CTreeCtrl::SetTopRow(int row) {
  row = std::max(0, std::min(row, rows_.GetCount() - 1));
  if (row == topRow_) return;
  TreePeer* const listener = Listener();
  topRow_ = row;
  if (listener != nullptr) listener->OnScrolled();
}

void CTreeCtrl::EnsureVisible(CTreeItem& item) {
  const WindowHandle own = GetHandle();
  for (CTreeItem* above = item.GetParent(); above != nullptr; above = above->GetParent()) {
    Expand(*above, true);
    if (IsDestroyed(own)) return;
  }
  const int row = rows_.IndexOf(item);
  SetTopRow(std::clamp(GetTopRow(), row - GetRowsPerPage() + 1, row));
}

int CTreeCtrl::GetRowsPerPage() const {
  return std::max(1, GetClientRect().Height() / GetLineHeight());
}

int CTreeCtrl::GetLineHeight() const {
  return Peer() == nullptr ? kTreeLineHeight : std::max(1, Peer()->GetLineHeight());
}

void CTreeCtrl::SetImageList(const CImageList* list) {
  images_ = list;
  Invalidate();
}

TreeHit CTreeCtrl::HitTest(Point point) const {
  if (!GetClientRect().Contains(point)) return {};
  if (Peer() != nullptr) {
    if (const std::optional<TreeHit> hit = Peer()->HitTest(point)) return *hit;
  }
  CTreeItem* const item = rows_.GetAt(GetTopRow() + point.y / GetLineHeight());
  if (item == nullptr) return {};
  const int imageLeft = ImageLeft(GetStyle(), *item);
  if (point.x < imageLeft) {
    const bool hasButton = (GetStyle() & kTreeHasButtons) != 0 && item->HasChildren();
    return {item,
            hasButton && point.x >= imageLeft - kIndent ? TreePart::Button : TreePart::Indent};
  }
  const Rect label = GetTextRect(*item);
  if (point.x < label.left) return {item, TreePart::Icon};
  return {item, point.x < label.right ? TreePart::Label : TreePart::RightOfLabel};
}

Rect CTreeCtrl::GetTextRect(const CTreeItem& item) const {
  const int row = rows_.IndexOf(item);
  if (row < 0) return {};
  if (Peer() != nullptr) {
    if (const std::optional<Rect> known = Peer()->GetTextRect(item)) return *known;
  }
  const int left = ImageLeft(GetStyle(), item) + ImageWidth(images_);
  const int rowTop = (row - GetTopRow()) * GetLineHeight();
  const int width = WindowToolkit::Current().MeasureText(GetFont(), item.GetText()).width;
  return {left, rowTop, left + width, rowTop + GetLineHeight()};
}

PaintCommands CTreeCtrl::DrawItem(const CTreeItem& item) const {
  const Rect label = GetTextRect(item);
  WindowToolkit& toolkit = WindowToolkit::Current();
  const bool isSelected = IsShownSelected(*this, item);
  TreeItemPaint paint;
  paint.rect = {0, label.top, GetClientRect().right, label.bottom};
  paint.background = toolkit.GetColor(isSelected ? SystemColor::Highlight : SystemColor::Window);
  paint.foreground =
      toolkit.GetColor(isSelected ? SystemColor::HighlightText : SystemColor::WindowText);
  return OnDrawItem(item, paint);
}

void CTreeCtrl::NotifyScrolled(int newTopRow) {
  topRow_ = std::max(0, std::min(newTopRow, rows_.GetCount() - 1));
}

void CTreeCtrl::OnLeftDoubleClick(Point point) {
  const WindowHandle own = GetHandle();
  const TreeHit hit = HitTest(point);
  OnItemActivated(point);
  // The handler may have refilled the tree.
  if (!IsWindow(own) || !(HitTest(point) == hit)) return;
  if (hit.IsOnItem()) Expand(*hit.item, !hit.item->IsExpanded());
}

bool CTreeCtrl::BeginDragImage(const CTreeItem& item, Point hotSpot, Point point) {
  return Peer() == nullptr || Peer()->OnDragBegun(item, hotSpot, ClientToScreen(point));
}

void CTreeCtrl::MoveDragImage(Point point) {
  if (Peer() != nullptr) Peer()->OnDragMoved(ClientToScreen(point));
}

void CTreeCtrl::EndDragImage() {
  if (Peer() != nullptr) Peer()->OnDragEnded();
}

void CTreeCtrl::OnDestroy() {
  input_.CancelPress();
  DeleteAllItems();
}

std::unique_ptr<WindowPeer> CTreeCtrl::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
