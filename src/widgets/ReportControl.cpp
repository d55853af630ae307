#include "widgets/ReportControl.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

#include "widgets/Toolkit.h"

namespace tarn {

namespace {

// Measuring a string takes about a hundred times as long as getting its length.
constexpr int kMostMeasured = 1000;

}  // namespace

void CReportHeader::ShowItemsInGroups(bool show) {
  if (show == showsInGroups_) return;
  showsInGroups_ = show;
  report_.OnColumnsChanged();
}

void CReportHeader::BestFit(CReportColumn& column) {
  WindowToolkit& toolkit = WindowToolkit::Current();
  int width = toolkit.MeasureText(report_.look_.captionFont, column.GetCaption()).width +
              2 * CReportControl::kCellMargin;
  const auto fit = [&](int row) { width = std::max(width, report_.MeasureCell(row, column)); };
  const int rowCount = report_.rows_.GetCount();
  const int belowSeen = std::min(rowCount, report_.topRow_ + report_.RowsPerPage() + 1);
  for (int row = report_.topRow_; row < belowSeen; ++row) fit(row);
  std::vector<std::pair<std::size_t, int>> longest;  // length of the string, and row
  for (int row = 0; row < rowCount; ++row) {
    const CReportRecordItem* const item = report_.GetItemAt(row, column.GetIndex());
    if (item != nullptr) longest.emplace_back(item->GetCaption().size(), row);
  }
  if (longest.size() > kMostMeasured) {
    std::nth_element(longest.begin(), longest.begin() + kMostMeasured, longest.end(),
                     std::greater<>());
    longest.resize(kMostMeasured);
  }
  for (const auto& [length, row] : longest) fit(row);
  column.SetWidth(width);
}

CReportControl::CReportControl()
    : columns_([this] { OnColumnsChanged(); }), header_(*this), rows_(columns_), selected_(rows_) {}

CReportControl::~CReportControl() {
  DestroyWindow();
}

std::unique_ptr<WindowPeer> CReportControl::MakePeer(WindowToolkit& toolkit) {
  std::unique_ptr<ReportPeer> made = toolkit.MakePeer(*this);
  reportPeer_ = made.get();
  return made;
}

CReportColumn* CReportControl::AddColumn(std::unique_ptr<CReportColumn> column) {
  return columns_.Add(std::move(column));
}

void CReportControl::OnColumnsChanged() {
  isArrangedAnew_ = true;
  if (ReportPeer* drawn = DrawnBy()) drawn->OnColumnsChanged();
}

void CReportControl::SetImageList(std::shared_ptr<const CImageList> list) {
  images_ = std::move(list);
  Invalidate();
}

void CReportControl::ShowGroupBy(bool show) {
  if (show == showsGroupBox_) return;
  showsGroupBox_ = show;
  if (ReportPeer* drawn = DrawnBy()) drawn->OnColumnsChanged();
}

void CReportControl::SetGridStyle(bool verticalLines, int horizontalStyle) {
  ReportLook changed = look_;
  changed.hasVerticalLines = verticalLines;
  changed.horizontalLineStyle = horizontalStyle;
  SetLook(changed);
}

void CReportControl::EnableToolTips(bool enable) {
  ReportLook changed = look_;
  changed.hasToolTips = enable;
  SetLook(changed);
}

void CReportControl::SetLook(const ReportLook& newLook) {
  look_ = newLook;
  if (ReportPeer* drawn = DrawnBy()) drawn->OnColumnsChanged();
}

CReportRecord* CReportControl::AddRecord(std::unique_ptr<CReportRecord> record) {
  return records_.Add(std::move(record));
}

void CReportControl::RemoveAllRecords() {
  rows_.Clear();
  selected_.indexes_.clear();
  focusedRow_ = -1;
  anchorRow_ = -1;
  populated_ = 0;
  // The peer must release the rows before the records are destroyed.
  ResetRows();
  records_.RemoveAll();
}

void CReportControl::ResetRows() {
  ++epoch_;
  if (ReportPeer* drawn = DrawnBy()) drawn->OnRowsReset();
}

CReportControl::RememberedSelection CReportControl::RememberSelection() const {
  RememberedSelection remembered;
  for (const int index : selected_.indexes_) {
    const CReportRow& row = *rows_.GetAt(index);
    if (row.IsGroup()) {
      remembered.groups.insert(row.GetGroup()->key);
    } else {
      remembered.records.insert(row.GetRecord());
    }
  }
  if (const CReportRow* focus = rows_.GetAt(focusedRow_)) {
    remembered.focusedRecord = focus->GetRecord();
    if (focus->IsGroup()) remembered.focusedGroup = focus->GetGroup()->key;
  }
  return remembered;
}

void CReportControl::RestoreSelection(const RememberedSelection& remembered) {
  const bool hadAny = focusedRow_ >= 0 || !selected_.indexes_.empty();
  selected_.indexes_.clear();
  focusedRow_ = -1;
  anchorRow_ = -1;
  topRow_ = std::clamp(topRow_, 0, std::max(0, rows_.GetCount() - 1));
  for (int i = 0; hadAny && i < rows_.GetCount(); ++i) {
    const CReportRow& row = *rows_.GetAt(i);
    const bool isSelected = row.IsGroup() ? remembered.groups.count(row.GetGroup()->key) != 0
                                          : remembered.records.count(row.GetRecord()) != 0;
    if (isSelected) selected_.indexes_.push_back(i);
    const bool isFocused = row.IsGroup() ? row.GetGroup()->key == remembered.focusedGroup
                                         : row.GetRecord() == remembered.focusedRecord;
    if (isFocused) focusedRow_ = anchorRow_ = i;
  }
}

void CReportControl::Populate() {
  const RememberedSelection remembered = RememberSelection();
  rows_.Build(records_, header_.IsShowItemsInGroups());
  populated_ = records_.GetCount();
  isArrangedAnew_ = false;
  RestoreSelection(remembered);
  ResetRows();
}

void CReportControl::PopulateAdded() {
  if (populated_ == records_.GetCount() && !isArrangedAnew_) return;
  const bool isSorted = columns_.GetSortColumn() != nullptr;
  if (isArrangedAnew_ || (isSorted && header_.IsShowItemsInGroups())) return Populate();
  // Rows change their position only if they are sorted.
  const RememberedSelection remembered = isSorted ? RememberSelection() : RememberedSelection();
  const int behindOld = rows_.GetCount();
  const int changed = rows_.Extend(records_, populated_);
  if (changed < 0) return Populate();
  populated_ = records_.GetCount();
  if (changed < behindOld) {
    RestoreSelection(remembered);
    return ResetRows();
  }
  ++epoch_;
  if (ReportPeer* drawn = DrawnBy()) drawn->OnRowsAppended(changed);
}

CReportRecordItem* CReportControl::GetItemAt(int row, int column) const {
  const CReportRow* found = rows_.GetAt(row);
  return found == nullptr || found->IsGroup() ? nullptr : found->GetRecord()->GetItem(column);
}

void CReportControl::SelectRow(int row) {
  const bool isThere = rows_.GetAt(row) != nullptr;
  anchorRow_ = isThere ? row : -1;
  Select(isThere ? std::vector<int>{row} : std::vector<int>(), anchorRow_);
  if (isThere) ShowRow(row);
}

bool CReportControl::Select(std::vector<int> indexes, int focused) {
  focusedRow_ = focused;
  if (indexes == selected_.indexes_) return false;
  selected_.indexes_ = std::move(indexes);
  if (ReportPeer* drawn = DrawnBy()) drawn->OnSelectionChanged();
  return true;
}

void CReportControl::ShowRow(int row) {
  const int perPage = RowsPerPage();
  topRow_ = std::clamp(topRow_, std::max(0, row - perPage + 1), row);
  if (ReportPeer* drawn = DrawnBy()) drawn->OnRowShown(row);
}

int CReportControl::RowsPerPage() const {
  if (ReportPeer* drawn = DrawnBy()) {
    if (const std::optional<int> rowCount = drawn->GetRowsPerPage()) return std::max(1, *rowCount);
  }
  const int above = kHeaderHeight + (showsGroupBox_ ? kGroupBoxHeight : 0);
  return std::max(1, (GetClientRect().Height() - above) / kRowHeight);
}

int CReportControl::PictureWidth() const {
  return images_ == nullptr ? kPictureWidth : images_->GetImageSize().width;
}

std::vector<CReportControl::ColumnSpan> CReportControl::LayOutColumns() const {
  std::vector<ColumnSpan> spans;
  int total = 0;
  int elastic = 0;
  for (int i = 0; i < columns_.GetCount(); ++i) {
    const CReportColumn& column = *columns_.GetAt(i);
    if (!column.IsVisible()) continue;
    spans.push_back({i, 0, column.GetWidth()});
    total += column.GetWidth();
    if (column.IsAutoSize()) elastic += column.GetWidth();
  }
  int surplus = GetClientRect().Width() - total;
  int left = 0;
  for (ColumnSpan& span : spans) {
    span.left = left;
    if (elastic > 0 && columns_.GetAt(span.column)->IsAutoSize()) {
      const int own = span.width;
      const auto share = static_cast<int>(std::int64_t{surplus} * own / elastic);
      span.width = std::max(std::min(own, kLeastElasticWidth), own + share);
      surplus -= span.width - own;
      elastic -= own;
    }
    left += span.width;
  }
  return spans;
}

ReportHit CReportControl::HitTest(Point point) const {
  if (ReportPeer* drawn = DrawnBy()) {
    if (const std::optional<ReportHit> hit = drawn->HitTest(point)) return *hit;
  }
  if (!GetClientRect().Contains(point)) return {};
  int top = showsGroupBox_ ? kGroupBoxHeight : 0;
  ReportHit hit;
  if (point.y < top) {
    hit.area = ReportHit::Area::GroupBox;
    return hit;
  }
  if (point.y < top + kHeaderHeight) {
    hit = HitCell(point, -1);
    hit.area = ReportHit::Area::Header;
    return hit;
  }
  top += kHeaderHeight;
  const int row = topRow_ + (point.y - top) / kRowHeight;
  return rows_.GetAt(row) == nullptr ? hit : HitCell(point, row);
}

ReportHit CReportControl::HitCell(Point point, int row) const {
  ReportHit hit;
  hit.area = ReportHit::Area::Row;
  hit.row = row;
  const std::vector<ColumnSpan> spans = LayOutColumns();
  const auto span = std::find_if(spans.begin(), spans.end(), [point](const ColumnSpan& each) {
    return point.x >= each.left && point.x < each.left + each.width;
  });
  if (span == spans.end()) return hit;
  hit.column = span->column;
  const CReportColumn& column = *columns_.GetAt(span->column);
  const CReportRow* shown = rows_.GetAt(row);
  if (shown == nullptr) return hit;
  int x = point.x - span->left - kCellMargin;
  if (column.IsTreeColumn() || shown->IsGroup()) {
    x -= shown->GetDepth() * kOpenerWidth;
    if (CanOpen(*shown) && x >= 0 && x < kOpenerWidth) hit.part = ReportHit::Part::Opener;
    x -= kOpenerWidth;
  }
  const CReportRecordItem* item = GetItemAt(row, column.GetIndex());
  if (item == nullptr) return hit;
  if (item->HasCheckbox() && x >= 0 && x < PictureWidth()) hit.part = ReportHit::Part::Check;
  if (item->GetHyperlinkCount() == 0 || x < 0) return hit;
  const std::string caption = item->GetCaption();
  WindowToolkit& toolkit = WindowToolkit::Current();
  const auto widthOf = [&](std::size_t bytes) {
    return toolkit.MeasureText(GetFont(), std::string_view(caption).substr(0, bytes)).width;
  };
  // Binary search for the first byte that ends to the right of the point.
  std::size_t byte = 0;
  for (std::size_t end = caption.size(); byte < end;) {
    const std::size_t middle = byte + (end - byte) / 2;
    if (widthOf(middle + 1) > x) {
      end = middle;
    } else {
      byte = middle + 1;
    }
  }
  if (byte < caption.size()) hit.hyperlink = item->FindHyperlink(static_cast<int>(byte));
  return hit;
}

int CReportControl::MeasureCell(int row, const CReportColumn& column) const {
  const CReportRow* shown = rows_.GetAt(row);
  const CReportRecordItem* item = GetItemAt(row, column.GetIndex());
  if (item == nullptr) return 0;
  int width = 2 * kCellMargin;
  if (column.IsTreeColumn()) width += (shown->GetDepth() + 1) * kOpenerWidth;
  if (item->HasCheckbox() || item->GetIconIndex() >= 0) width += PictureWidth();
  return width + WindowToolkit::Current().MeasureText(GetFont(), item->GetCaption()).width;
}

}  // namespace tarn
