#include "widgets/qt/TreeView.h"

#include <QContextMenuEvent>
#include <QDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "platform/text/Text.h"
#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {

namespace {

constexpr float kGuideStrength = 0.15F;

}  // namespace

TreeView::TreeView(CTreeCtrl& shownTree)
    : FollowingView(shownTree),
      tree_(shownTree),
      items_(new TreeModel(shownTree, this)),
      delegate_(new TreeDelegate(shownTree, *this)) {
  const Following quiet(following, following + 1);
  setHeaderHidden(true);
  setFrameShape(HasFrame(tree_) ? QFrame::StyledPanel : QFrame::NoFrame);
  setRootIsDecorated((tree_.GetStyle() & kTreeLinesAtRoot) != 0);
  setSelectionMode(SingleSelection);
  setExpandsOnDoubleClick(false);
  setItemDelegate(delegate_);
  setModel(items_);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  // As wide as the visible lines; see OnScrolledTo().
  header()->setResizeContentsPrecision(0);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &TreeView::OnScrolledTo);
  delegate_->onWidthChanged = [this] { ScheduleNotifyState(); };
}

void TreeView::Detach() {
  const Following quiet(following, following + 1);
  items_->Detach();
}

void TreeView::FollowResetting() {
  const Following quiet(following, following + 1);
  items_->BeginReset();
}

void TreeView::FollowReset() {
  const Following quiet(following, following + 1);
  delegate_->ClearWidths();
  items_->EndReset();
  for (const CTreeItem* item = tree_.GetRootItem(); item != nullptr;
       item = item->GetNextVisible()) {
    if (item->IsExpanded()) expand(items_->IndexOf(item));
  }
  FollowSelection();
  FollowScroll();
}

void TreeView::FollowInserted(const CTreeItem* above, int first, int count) {
  const Following quiet(following, following + 1);
  items_->EndInsert();
  for (int i = first; i < first + count; ++i) {
    const CTreeItem* const item = tree_.GetItemAt(above, i);
    if (item != nullptr && item->IsExpanded()) FollowExpansion(*item);
  }
}

void TreeView::FollowRemoved(const CTreeItem* above) {
  const Following quiet(following, following + 1);
  items_->EndRemove();
  if (above != nullptr && !above->IsExpanded()) collapse(items_->IndexOf(above));
  FollowSelection();
}

void TreeView::FollowExpansion(const CTreeItem& item) {
  const Following quiet(following, following + 1);
  if (!item.IsExpanded()) {
    collapse(items_->IndexOf(&item));
    return;
  }
  const CTreeItem* each = &item;
  do {
    if (each->IsExpanded()) expand(items_->IndexOf(each));
    each = each->GetNextVisible();
  } while (each != nullptr && each->IsBelow(item));
}

// Updates the selection model for observers of the view, such as screen readers; painting uses the
// control's selection.
void TreeView::FollowSelection() {
  const Following quiet(following, following + 1);
  const QModelIndex index = items_->IndexOf(tree_.GetSelectedItem());
  if (index.isValid()) {
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  } else {
    selectionModel()->clear();
  }
  viewport()->update();
}

void TreeView::FollowScroll() {
  const Following quiet(following, following + 1);
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(tree_.GetTopRow());
  if (verticalScrollBar()->value() != tree_.GetTopRow()) ScheduleNotifyState();
}

void TreeView::FollowMeasures() {
  const QSize current(delegate_->LabelOffset(), delegate_->LineHeight());
  if (measures_ == current) return;
  measures_ = current;
  scheduleDelayedItemsLayout();
}

TreeHit TreeView::HitAt(Point point) {
  const Following quiet(following, following + 1);
  const QModelIndex index = indexAt(QPoint(point.x, point.y));
  CTreeItem* const item = TreeModel::ItemAt(index);
  if (item == nullptr) return {};
  const int left = visualRect(index).left();
  if (point.x < left) {
    const bool hasButton = (tree_.GetStyle() & kTreeHasButtons) != 0 && item->HasChildren();
    return {item,
            hasButton && point.x >= left - indentation() ? TreePart::Button : TreePart::Indent};
  }
  const int labelLeft = left + delegate_->LabelOffset();
  if (point.x < labelLeft) return {item, TreePart::Icon};
  return {item, point.x < labelLeft + delegate_->LabelWidth(*item) ? TreePart::Label
                                                                   : TreePart::RightOfLabel};
}

Rect TreeView::TextRectOf(const CTreeItem& item) {
  const Following quiet(following, following + 1);
  const QRect line = visualRect(items_->IndexOf(&item));
  if (line.isEmpty()) return {};
  const int left = line.left() + delegate_->LabelOffset();
  return {left, line.top(), left + delegate_->LabelWidth(item), line.top() + line.height()};
}

void TreeView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
  const CTreeItem* const item = TreeModel::ItemAt(index);
  if (item == nullptr || !IsWindow(handle)) return;
  const QRect place = visualRect(index);
  const int room = indentation() * (item->GetLevel() + (rootIsDecorated() ? 1 : 0));
  const QRect branches(place.left() - room, place.top(), room, place.height());
  if ((tree_.GetStyle() & kTreeHasLines) != 0) DrawGuides(*painter, branches);
  if ((tree_.GetStyle() & kTreeHasButtons) != 0) drawBranches(painter, branches, index);
  QStyleOptionViewItem line = option;
  line.rect = place;
  const bool isShown = tree_.HasFocus() || (tree_.GetStyle() & kTreeShowsSelectionAlways) != 0;
  const bool isSelected =
      item == tree_.GetDropHighlight() || (isShown && item == tree_.GetSelectedItem());
  line.state.setFlag(QStyle::State_Selected, isSelected);
  delegate_->paint(painter, line, index);
}

// Draws a faint vertical line for each ancestor of the item.
void TreeView::DrawGuides(QPainter& painter, const QRect& branches) const {
  const QPalette& colors = palette();
  painter.setPen(Blend(colors.color(QPalette::Base), colors.color(QPalette::Text), kGuideStrength));
  for (int x = branches.right() + 1 - indentation() * 3 / 2; x > branches.left();
       x -= indentation()) {
    painter.drawLine(x, branches.top(), x, branches.bottom());
  }
}

// All items, including those below collapsed ones.
std::vector<CTreeItem*> TreeView::ListItems() const {
  std::vector<CTreeItem*> all;
  for (CTreeItem* item = tree_.GetRootItem(); item != nullptr; item = item->GetNext()) {
    all.push_back(item);
  }
  return all;
}

void TreeView::SearchFor(const QKeyEvent& typed) {
  const std::vector<CTreeItem*> all = ListItems();
  const auto current = std::find(all.begin(), all.end(), tree_.GetSelectedItem());
  const auto labelOf = [&all](int each) -> const std::string& {
    return all[static_cast<std::size_t>(each)]->GetText();
  };
  const std::optional<int> line = typeAhead.Find(
      typed, static_cast<int>(all.size()),
      current == all.end() ? -1 : static_cast<int>(current - all.begin()),
      [&](int each, const std::string& text) { return StartsWithNoCase(labelOf(each), text); },
      [&](int each, const std::string& text) {
        return ToQt(labelOf(each)).contains(ToQt(text), Qt::CaseInsensitive);
      });
  if (!line) return;
  CTreeItem* const found = all[static_cast<std::size_t>(*line)];
  const WindowHandle own = handle;
  tree_.SelectItem(found);
  if (!IsWindow(own) || tree_.GetSelectedItem() != found) return;
  tree_.EnsureVisible(*found);
  // Wider lines may have made a scroll bar appear, which takes space for one line.
  NotifyState();
  if (IsWindow(own) && tree_.GetSelectedItem() == found) tree_.EnsureVisible(*found);
}

// Runs before the control's own handling, which is limited to the window: releasing the button
// elsewhere must end a drag as well.
bool TreeView::eventFilter(QObject* watched, QEvent* event) {
  const bool isRelease = event->type() == QEvent::MouseButtonRelease;
  if (watched == viewport() && (isRelease || event->type() == QEvent::MouseMove)) {
    const auto& mouse = static_cast<const QMouseEvent&>(*event);
    const bool isHeld = mouse.buttons().testFlag(Qt::LeftButton);
    const bool isInside = viewport()->rect().contains(mouse.position().toPoint());
    if (!isHeld && !(isRelease && isInside) && IsWindow(handle)) tree_.NotifyDragCancelled();
  }
  return QTreeView::eventFilter(watched, event);
}

// If the control does not use a key, the view handles the activation key and the letters of a
// search; the others go to the parent widget.
void TreeView::keyPressEvent(QKeyEvent* event) {
  event->ignore();
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const Qt::KeyboardModifiers keys = event->modifiers() & ~Qt::KeypadModifier;
  if (!IsWindow(handle)) return;
  if (event->key() == Qt::Key_Escape && tree_.NotifyDragCancelled()) {
    event->accept();
    return;
  }
  if (typeAhead.Takes(*event)) {
    event->accept();
    SearchFor(*event);
    return;
  }
  // The key activates the default button of a dialog.
  const bool isDialog = qobject_cast<QDialog*>(window()) != nullptr;
  if (!isEnter || keys != Qt::NoModifier || isDialog) return;
  CTreeItem* const selected = tree_.GetSelectedItem();
  if (selected == nullptr) return;
  event->accept();
  tree_.EnsureVisible(*selected);
  const Rect label = TextRectOf(*selected);
  tree_.NotifyDoubleClick(MouseButton::Left,
                          {std::max(0, label.left), (label.top + label.bottom) / 2});
}

// Only for the keyboard; for the mouse the control requests the menu.
void TreeView::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (event->reason() != QContextMenuEvent::Keyboard || !IsWindow(handle)) return;
  QPoint place(0, 0);
  if (const CTreeItem* const selected = tree_.GetSelectedItem()) {
    const Rect label = TextRectOf(*selected);
    place = QPoint(std::clamp(label.left, 0, std::max(0, viewport()->width() - 1)),
                   std::clamp(label.bottom, 0, std::max(0, viewport()->height() - 1)));
  }
  const QPoint screen = viewport()->mapToGlobal(place);
  tree_.NotifyContextMenu({screen.x(), screen.y()});
}

// A field over a label moves along with it. The base class moves child widgets only if a part of
// the painted content remains visible.
void TreeView::scrollContentsBy(int dx, int dy) {
  std::vector<std::pair<QWidget*, QPoint>> fields;
  for (QWidget* const each :
       viewport()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (ShowsWindow(*each)) fields.emplace_back(each, each->pos());
  }
  QTreeView::scrollContentsBy(dx, dy);
  const QPoint way(dx, dy * delegate_->LineHeight());
  for (const auto& [field, place] : fields) field->move(place + way);
}

// The single column extends to the right edge, so that a line can also be hit to the right of its
// label.
void TreeView::updateGeometries() {
  const int width = std::max(1, viewport()->width());
  if (header()->minimumSectionSize() != width) {
    header()->setMinimumSectionSize(width);
    resizeColumnToContents(0);
  }
  QTreeView::updateGeometries();
}

void TreeView::OnScrolledTo(int row) {
  // The newly visible lines may be wider.
  resizeColumnToContents(0);
  if (following > 0) {
    ScheduleNotifyState();
  } else if (IsWindow(handle) && !items_->IsResetting()) {
    tree_.NotifyScrolled(row);
  }
}

// Reports where the view could not follow the control: a size reduced by its scroll bars, and a top
// line that would leave empty space at the bottom. Before that, widens the view for lines that were
// painted wider than known.
void TreeView::NotifyState() {
  if (items_->IsResetting()) return;
  executeDelayedItemsLayout();
  resizeColumnToContents(0);
  const int row = verticalScrollBar()->value();
  const WindowHandle own = handle;
  if (row != tree_.GetTopRow()) tree_.NotifyScrolled(row);
  if (IsWindow(own)) NotifySize();
}

}  // namespace tarn
