#include "widgets/qt/ReportView.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolTip>
#include <algorithm>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/text/Text.h"
#include "widgets/Toolkit.h"
#include "widgets/qt/QtFont.h"
#include "widgets/qt/QtText.h"

namespace tarn {

namespace {

constexpr int kTakePeriodMs = 30;
// Adding rows costs time for every existing row.
constexpr int kRowsPerMs = 1000;

// The context menu key for the headers.
bool IsHeaderMenuKey(const QKeyEvent& event) {
  const Qt::KeyboardModifiers keys = event.modifiers();
  return (event.key() == Qt::Key_F10 && keys == (Qt::ControlModifier | Qt::ShiftModifier)) ||
         (event.key() == Qt::Key_Menu && keys == Qt::ControlModifier);
}

}  // namespace

ReportView::ReportView(CReportControl& shownReport)
    : FollowingView(shownReport),
      report_(shownReport),
      rows_(new ReportModel(shownReport, this)),
      delegate_(new ReportDelegate(shownReport, *this)),
      head_(new ReportHeader(shownReport, this)) {
  const Following quiet(following, following + 1);
  setFrameShape(QFrame::NoFrame);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setSelectionMode(ExtendedSelection);
  setItemDelegate(delegate_);
  setHeader(head_);
  // The base class has disabled it, since the view does not sort.
  head_->setSectionsClickable(true);
  setModel(rows_);
  takeTimer_.setSingleShot(true);
  connect(&takeTimer_, &QTimer::timeout, this, [this] { TakeMore(); });
  connect(head_, &QHeaderView::sectionClicked, this, [this](int column) {
    if (IsWindow(handle)) report_.GetReportHeader().NotifyClicked(column);
  });
  connect(head_, &QHeaderView::sectionResized, this, [this](int column, int /*old*/, int width) {
    if (following == 0 && IsWindow(handle)) report_.GetReportHeader().NotifyResized(column, width);
  });
  connect(head_, &QHeaderView::sectionHandleDoubleClicked, this, [this](int column) {
    CReportColumn* const fitted = IsWindow(handle) ? report_.GetColumns().GetAt(column) : nullptr;
    if (fitted == nullptr) return;
    report_.GetReportHeader().BestFit(*fitted);
    // The other columns make room for the full width.
    report_.GetReportHeader().NotifyResized(column, fitted->GetWidth());
  });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int row) {
    if (following > 0 || isRefillDue_) {
      ScheduleNotifyState();
    } else if (IsWindow(handle)) {
      report_.NotifyScrolled(row);
    }
  });
}

void ReportView::Detach() {
  const Following quiet(following, following + 1);
  takeTimer_.stop();
  rows_->Detach();
}

void ReportView::FollowColumns() {
  const Following quiet(following, following + 1);
  head_->setFont(ToQtFont(report_.GetLook().captionFont, font()));
  if (!rows_->NotifyColumns()) FollowRows();
  LayOutColumns();
  viewport()->update();
}

void ReportView::LayOutColumns() {
  const Following quiet(following, following + 1);
  for (int i = 0; i < head_->count(); ++i) {
    const CReportColumn* const column = report_.GetColumns().GetAt(i);
    if (column != nullptr) head_->setSectionHidden(i, !column->IsVisible());
  }
  for (const ReportLayout::ColumnSpan& span : report_.GetLayout().LayOutColumns()) {
    if (span.column < head_->count()) head_->resizeSection(span.column, span.width);
  }
  head_->viewport()->update();
}

void ReportView::FollowRows() {
  const Following quiet(following, following + 1);
  takeTimer_.stop();
  rows_->Reset();
  isRefillDue_ = true;
  ScheduleNotifyState();
}

void ReportView::ShowRefill() {
  if (!isRefillDue_) return;
  const Following quiet(following, following + 1);
  isRefillDue_ = false;
  SelectRows();
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(report_.GetTopRow());
}

void ReportView::FollowAppended() {
  if (!takeTimer_.isActive()) {
    takeTimer_.start(std::max(kTakePeriodMs, report_.GetRows().GetCount() / kRowsPerMs));
  }
}

void ReportView::TakeMore() {
  const Following quiet(following, following + 1);
  takeTimer_.stop();
  rows_->TakeMore();
}

void ReportView::FollowRow(int row) {
  rows_->NotifyChanged(row);
}

void ReportView::FollowSelection() {
  const Following quiet(following, following + 1);
  viewport()->update();
  if (isRefillDue_) return;
  SelectRows();
}

// Updates the selection model for observers of the view, such as screen readers; painting uses the
// control's selection.
void ReportView::SelectRows() {
  if (rows_->columnCount() == 0) return;
  QItemSelection selection;
  const std::vector<int>& indexes = report_.GetSelectedRows().GetIndexes();
  if (!indexes.empty() || report_.GetFocusedRow() >= 0) TakeMore();
  for (std::size_t first = 0; first < indexes.size();) {
    std::size_t last = first;
    while (last + 1 < indexes.size() && indexes[last + 1] == indexes[last] + 1) ++last;
    selection.select(rows_->index(indexes[first], 0),
                     rows_->index(indexes[last], rows_->columnCount() - 1));
    first = last + 1;
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  int column = 0;
  while (column + 1 < rows_->columnCount() && isColumnHidden(column)) ++column;
  selectionModel()->setCurrentIndex(rows_->index(report_.GetFocusedRow(), column),
                                    QItemSelectionModel::NoUpdate);
}

void ReportView::FollowScroll() {
  const Following quiet(following, following + 1);
  ShowRefill();
  if (report_.GetTopRow() > 0) TakeMore();
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(report_.GetTopRow());
  if (verticalScrollBar()->value() != report_.GetTopRow()) ScheduleNotifyState();
}

void ReportView::FollowMeasures() {
  if (rowHeight_ == delegate_->RowHeight()) return;
  rowHeight_ = delegate_->RowHeight();
  scheduleDelayedItemsLayout();
}

void ReportView::RequestEdit(int row, int column) {
  const QPersistentModelIndex cell = rows_->index(row, column);
  QTimer::singleShot(0, this, [this, cell] {
    if (!IsWindow(handle) || !cell.isValid()) return;
    scrollTo(cell);
    edit(cell, AllEditTriggers, nullptr);
  });
}

int ReportView::RowsPerPage() const {
  return viewport()->height() / std::max(1, delegate_->RowHeight());
}

int ReportView::RowAt(int y) const {
  if (y < 0) return -1;
  const int row = verticalScrollBar()->value() + y / std::max(1, delegate_->RowHeight());
  return row < rows_->rowCount() ? row : -1;
}

QRect ReportView::RectOf(int row) const {
  const int height = delegate_->RowHeight();
  const int left = -head_->offset();
  return {left, (row - verticalScrollBar()->value()) * height,
          std::max(head_->length(), viewport()->width() - left), height};
}

QRect ReportView::RectOf(int row, int column) const {
  QRect place = RectOf(row);
  const CReportRow* const shown = report_.GetRows().GetAt(row);
  if (shown == nullptr || shown->IsGroup()) return place;
  place.setLeft(head_->sectionViewportPosition(column));
  place.setWidth(head_->sectionSize(column));
  return place;
}

ReportHit ReportView::HitAt(QPoint point) const {
  ReportHit hit;
  hit.row = viewport()->rect().contains(point) ? RowAt(point.y()) : -1;
  const CReportRow* const row = report_.GetRows().GetAt(hit.row);
  if (row == nullptr) return {};
  hit.area = ReportHit::Area::Row;
  hit.column = head_->logicalIndexAt(point.x());
  // A group row spans all columns, and there may be no column at this point.
  const int column = row->IsGroup() ? std::max(0, hit.column) : hit.column;
  if (report_.GetColumns().GetAt(column) == nullptr) return hit;
  delegate_->Hit(hit.row, column, RectOf(hit.row, column), point, hit);
  return hit;
}

void ReportView::drawRow(QPainter* painter, const QStyleOptionViewItem& /*option*/,
                         const QModelIndex& index) const {
  if (IsWindow(handle)) delegate_->PaintRow(*painter, index.row(), RectOf(index.row()), *head_);
}

void ReportView::paintEvent(QPaintEvent* event) {
  if (IsWindow(handle)) ShowRefill();
  QTreeView::paintEvent(event);
}

bool ReportView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTreeView::viewportEvent(event);
  ShowTip(*static_cast<QHelpEvent*>(event));
  return true;
}

void ReportView::ShowTip(QHelpEvent& event) {
  if (!IsWindow(handle)) return;
  const ReportHit hit = HitAt(event.pos());
  const QModelIndex index = rows_->index(hit.row, hit.column);
  const QRect place = RectOf(hit.row, hit.column);
  const bool isWanted =
      report_.GetLook().hasToolTips && index.isValid() && delegate_->IsCut(index, place);
  if (!isWanted) {
    QToolTip::hideText();
    return event.ignore();
  }
  QToolTip::showText(event.globalPos(), Qt::convertFromPlainText(index.data().toString()),
                     viewport(), place);
}

// Mouse events are handled by the control before they arrive here.
void ReportView::mousePressEvent(QMouseEvent* event) {
  event->accept();
}

void ReportView::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
}

void ReportView::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
  if (!IsWindow(handle)) return;
  const ReportHit hit = HitAt(event->position().toPoint());
  const bool isOnText = hit.column >= 0 && hit.part == ReportHit::Part::Cell;
  if (isOnText && report_.CanEdit(hit.row, hit.column)) RequestEdit(hit.row, hit.column);
}

void ReportView::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  if (!IsWindow(handle)) return;
  const bool isLink = HitAt(event->position().toPoint()).hyperlink >= 0;
  viewport()->setCursor(isLink ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

// Keys that the control did not use.
void ReportView::keyPressEvent(QKeyEvent* event) {
  event->ignore();
  if (!IsWindow(handle)) return;
  if (event->matches(QKeySequence::Copy)) {
    event->accept();
    CopyRows();
  } else if (event->matches(QKeySequence::SelectAll)) {
    event->accept();
    selectAll();
  } else if (IsHeaderMenuKey(*event)) {
    event->accept();
    head_->OpenMenu(SearchedColumn());
  } else if (const int column = SearchedColumn(); column >= 0 && typeAhead.Takes(*event)) {
    event->accept();
    const std::optional<int> found =
        typeAhead.Find(*event, report_.GetRows().GetCount(), report_.GetFocusedRow(),
                       [this, column](int row, const std::string& text) {
                         const CReportRecordItem* const item = report_.GetItemAt(row, column);
                         return item != nullptr && StartsWithNoCase(item->GetCaption(), text);
                       });
    if (!found) return;
    const WindowHandle own = handle;
    report_.NotifySelected({*found}, *found);
    if (IsWindow(own)) scrollTo(rows_->index(*found, column));
  }
}

int ReportView::SearchedColumn() const {
  const CReportColumns& columns = std::as_const(report_).GetColumns();
  const auto hasTexts = [](const CReportColumn& column) {
    return column.IsVisible() && column.GetIconId() == CReportColumn::kNoIcon;
  };
  int first = -1;
  for (int i = columns.GetCount() - 1; i >= 0; --i) {
    const CReportColumn& column = *columns.GetAt(i);
    if (!hasTexts(column)) continue;
    if (column.IsSorted()) return i;
    first = i;
  }
  return first;
}

void ReportView::selectAll() {
  if (!IsWindow(handle)) return;
  std::vector<int> all(static_cast<std::size_t>(report_.GetRows().GetCount()));
  std::iota(all.begin(), all.end(), 0);
  report_.NotifySelected(std::move(all), report_.GetFocusedRow());
}

// One line per row, with tabs between the visible columns.
void ReportView::CopyRows() const {
  std::string text;
  for (const int row : report_.GetSelectedRows().GetIndexes()) {
    std::string line;
    const char* separator = "";
    for (int column = 0; column < report_.GetColumns().GetCount(); ++column) {
      const CReportRecordItem* const item = report_.GetItemAt(row, column);
      const bool isText = !isColumnHidden(column) && item != nullptr &&
                          report_.GetColumns().GetAt(column)->GetIconId() == CReportColumn::kNoIcon;
      if (isText) line += std::exchange(separator, "\t") + item->GetCaption();
    }
    if (report_.GetRows().GetAt(row)->IsGroup())
      line = report_.GetRows().GetAt(row)->GetGroup()->text;
    text += line + "\n";
  }
  if (!text.empty()) WindowToolkit::Current().SetClipboardText(text);
}

void ReportView::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  const WindowHandle own = handle;
  if (!IsWindow(own)) return;
  QPoint screen = event->globalPos();
  if (event->reason() == QContextMenuEvent::Keyboard) {
    const int row = std::clamp(report_.GetFocusedRow() - report_.GetTopRow() + 1, 0, RowsPerPage());
    screen = viewport()->mapToGlobal(QPoint(0, row * delegate_->RowHeight()));
  } else if (const int row = RowAt(event->pos().y());
             row >= 0 && !report_.GetSelectedRows().Contains(row)) {
    report_.NotifySelected({row}, row);
    if (!IsWindow(own)) return;
  }
  if (!report_.NotifyContextMenu({screen.x(), screen.y()}) && IsWindow(own)) ShowRowMenu(screen);
}

// Default context menu if the report's owners have none: actions on the rows, and the header's
// functions for keyboard users.
void ReportView::ShowRowMenu(QPoint screen) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto whileAlive = [this](auto work) {
    return [this, work] {
      if (IsWindow(handle)) work();
    };
  };
  QAction* const copy =
      menu->addAction(QCoreApplication::translate("ReportView", "&Copy"),
                      QKeySequence(QKeySequence::Copy), this, whileAlive([this] { CopyRows(); }));
  copy->setEnabled(report_.GetSelectedRows().GetCount() > 0);
  QAction* const all = menu->addAction(QCoreApplication::translate("ReportView", "Select &all"),
                                       QKeySequence(QKeySequence::SelectAll), this,
                                       whileAlive([this] { selectAll(); }));
  all->setEnabled(report_.GetRows().GetCount() > 0);
  menu->addSeparator();
  QMenu* const sorting = menu->addMenu(QCoreApplication::translate("ReportView", "&Sort by"));
  for (int i = 0; i < report_.GetColumns().GetCount(); ++i) {
    const CReportColumn& column = *report_.GetColumns().GetAt(i);
    if (!column.IsVisible() || !column.IsSortable()) continue;
    QAction* const action =
        sorting->addAction(ToQtLabel(column.GetCaption()), this,
                           whileAlive([this, i] { report_.GetReportHeader().NotifyClicked(i); }));
    action->setCheckable(true);
    action->setChecked(column.IsSorted());
  }
  sorting->setEnabled(!sorting->isEmpty());
  menu->popup(screen);
}

void ReportView::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  const bool isOther = event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
  if (!isOther || !IsWindow(handle)) return;
  head_->setFont(ToQtFont(report_.GetLook().captionFont, font()));
  FollowMeasures();
}

// Reports where the view could not follow the control: a size reduced by its scroll bars, and a top
// row that would leave empty space at the bottom.
void ReportView::NotifyState() {
  ShowRefill();
  executeDelayedItemsLayout();
  const int row = verticalScrollBar()->value();
  const WindowHandle own = handle;
  if (row != report_.GetTopRow() && !rows_->HasMore()) report_.NotifyScrolled(row);
  if (IsWindow(own)) NotifySize();
  if (IsWindow(own)) LayOutColumns();
}

}  // namespace tarn
