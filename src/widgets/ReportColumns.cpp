#include "widgets/ReportColumns.h"

#include <algorithm>
#include <cstddef>

namespace tarn {

void CReportColumn::SetWidth(int pixels) {
  pixels = std::clamp(pixels, 0, kMaxWidth);
  if (pixels == width) return;
  width = pixels;
  Changed();
}

void CReportColumn::SetVisible(bool visible) {
  if (visible == isVisible) return;
  isVisible = visible;
  Changed();
}

void CReportColumn::SetAlignment(ReportAlignment align) {
  if (align == alignment) return;
  alignment = align;
  Changed();
}

void CReportColumnOrder::Add(const CReportColumn* column) {
  if (column == nullptr) return;
  columns.push_back(column);
  onChange();
}

void CReportColumnOrder::Clear() {
  if (columns.empty()) return;
  columns.clear();
  onChange();
}

int CReportColumnOrder::IndexOf(const CReportColumn* column) const {
  const auto found = std::find(columns.begin(), columns.end(), column);
  return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

CReportColumn* CReportColumns::GetAt(int index) const {
  const auto place = static_cast<std::size_t>(index);
  return index < 0 || place >= columns.size() ? nullptr : columns[place].get();
}

CReportColumn* CReportColumns::Add(std::unique_ptr<CReportColumn> column) {
  column->onChange = onChange;
  columns.push_back(std::move(column));
  onChange();
  return columns.back().get();
}

void CReportColumns::Clear() {
  groups.Clear();
  columns.clear();
  onChange();
}

void CReportColumns::SetSortColumn(const CReportColumn* column, bool ascending) {
  for (const auto& each : columns) {
    each->isSorted = each.get() == column;
    if (each->isSorted) each->isAscending = ascending;
  }
  onChange();
}

const CReportColumn* CReportColumns::GetSortColumn() const {
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [](const auto& each) { return each->IsSorted(); });
  return found == columns.end() ? nullptr : found->get();
}

}  // namespace tarn
