#include "widgets/ReportControl.h"

#include <algorithm>
#include <utility>

#include "widgets/Toolkit.h"

namespace tarn {

CReportControl::CReportControl()
    : columns_([this] { OnColumnsChanged(); }), header_(*this), rows_(columns_) {}

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
  isRearranged_ = true;
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
  selection_.Clear();
  populated_ = 0;
  // The peer must release the rows before the records are destroyed.
  ResetRows();
  records_.RemoveAll();
}

void CReportControl::ResetRows() {
  ++epoch_;
  if (ReportPeer* drawn = DrawnBy()) drawn->OnRowsReset();
}

void CReportControl::RestoreSelection(const ReportSelection::Remembered& remembered) {
  selection_.Restore(remembered);
  topRow_ = std::clamp(topRow_, 0, std::max(0, rows_.GetCount() - 1));
}

void CReportControl::Populate() {
  const ReportSelection::Remembered remembered = selection_.Remember();
  rows_.Build(records_, header_.IsShowItemsInGroups());
  populated_ = records_.GetCount();
  isRearranged_ = false;
  RestoreSelection(remembered);
  ResetRows();
}

void CReportControl::PopulateAdded() {
  if (populated_ == records_.GetCount() && !isRearranged_) return;
  const bool isSorted = columns_.GetSortColumn() != nullptr;
  if (isRearranged_ || (isSorted && header_.IsShowItemsInGroups())) return Populate();
  // Rows change their position only if they are sorted.
  const ReportSelection::Remembered remembered =
      isSorted ? selection_.Remember() : ReportSelection::Remembered();
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
  selection_.SetAnchor(isThere ? row : -1);
  Select(isThere ? std::vector<int>{row} : std::vector<int>(), isThere ? row : -1);
  if (isThere) ShowRow(row);
}

bool CReportControl::Select(std::vector<int> indexes, int focused) {
  if (!selection_.Select(std::move(indexes), focused)) return false;
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
  return layout_.GetRowsPerPage();
}

ReportHit CReportControl::HitTest(Point point) const {
  if (ReportPeer* drawn = DrawnBy()) {
    if (const std::optional<ReportHit> hit = drawn->HitTest(point)) return *hit;
  }
  return layout_.HitTest(point);
}

}  // namespace tarn
