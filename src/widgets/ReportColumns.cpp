#include "widgets/ReportColumns.h"

#include <algorithm>
#include <cstddef>

namespace tarn {

void CReportColumn::SetWidth(int pixels) {
  pixels = std::clamp(pixels, 0, kMaxWidth);
  if (pixels == width_) return;
  width_ = pixels;
  Changed();
}

void CReportColumn::SetVisible(bool visible) {
  if (visible == isVisible_) return;
  isVisible_ = visible;
  Changed();
}

void CReportColumn::SetAlignment(ReportAlignment align) {
  if (align == alignment_) return;
  alignment_ = align;
  Changed();
}

void CReportColumnOrder::Add(const CReportColumn* column) {
  if (column == nullptr) return;
  columns_.push_back(column);
  onChange_();
}

void CReportColumnOrder::Clear() {
  if (columns_.empty()) return;
  columns_.clear();
  onChange_();
}

int CReportColumnOrder::IndexOf(const CReportColumn* column) const {
  const auto found = std::find(columns_.begin(), columns_.end(), column);
  return found == columns_.end() ? -1 : static_cast<int>(found - columns_.begin());
}

CReportColumn* CReportColumns::GetAt(int index) const {
  const auto place = static_cast<std::size_t>(index);
  return index < 0 || place >= columns_.size() ? nullptr : columns_[place].get();
}

CReportColumn* CReportColumns::Add(std::unique_ptr<CReportColumn> column) {
  column->onChange_ = onChange_;
  columns_.push_back(std::move(column));
  onChange_();
  return columns_.back().get();
}

void CReportColumns::Clear() {
  groups_.Clear();
  columns_.clear();
  onChange_();
}

void CReportColumns::SetSortColumn(const CReportColumn* column, bool ascending) {
  for (const auto& each : columns_) {
    each->isSorted_ = each.get() == column;
    if (each->isSorted_) each->isAscending_ = ascending;
  }
  onChange_();
}

const CReportColumn* CReportColumns::GetSortColumn() const {
  const auto found = std::find_if(columns_.begin(), columns_.end(),
                                  [](const auto& each) { return each->IsSorted(); });
  return found == columns_.end() ? nullptr : found->get();
}

}  // namespace tarn
