#include "widgets/ReportHeader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "widgets/ReportControl.h"
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
              2 * ReportLayout::kCellMargin;
  const auto fit = [&](int row) {
    width = std::max(width, report_.layout_.MeasureCell(row, column));
  };
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

void CReportHeader::NotifyClicked(int column) {
  const CReportColumn* clicked = report_.columns_.GetAt(column);
  if (!report_.IsCreated() || clicked == nullptr || !clicked->IsSortable()) return;
  report_.columns_.SetSortColumn(clicked, !(clicked->IsSorted() && clicked->IsSortedAscending()));
  report_.SortRows();
}

void CReportHeader::NotifyRightClicked(int column, Point screen) {
  if (!report_.IsCreated()) return;
  ReportNotice notice;
  notice.column = report_.columns_.GetAt(column) == nullptr ? -1 : column;
  notice.screen = screen;
  report_.Send(kMsgReportHeaderRightClick, notice);
}

void CReportHeader::NotifyResized(int column, int width) {
  CReportColumn* const resized = report_.columns_.GetAt(column);
  if (resized == nullptr) return;
  // All columns keep their actual width, except for the auto-size columns on the right, which share
  // the difference.
  int gained = 0;
  int elastic = 0;
  const std::vector<ReportLayout::ColumnSpan> spans = report_.layout_.LayOutColumns();
  for (const ReportLayout::ColumnSpan& span : spans) {
    if (span.column == column) gained = width - span.width;
    const bool isElastic = report_.columns_.GetAt(span.column)->IsAutoSize();
    if (span.column > column && isElastic) elastic += span.width;
  }
  for (const ReportLayout::ColumnSpan& span : spans) {
    CReportColumn& each = *report_.columns_.GetAt(span.column);
    if (span.column == column || !each.IsAutoSize()) continue;
    int own = span.width;
    if (span.column > column && elastic > 0) {
      const auto share = static_cast<int>(std::int64_t{gained} * own / elastic);
      elastic -= own;
      own = std::max(std::min(own, ReportLayout::kLeastElasticWidth), own - share);
      gained -= share;
    }
    each.SetWidth(own);
  }
  resized->SetWidth(width);
}

void CReportHeader::NotifyGrouped(int column) {
  const CReportColumn* added = report_.columns_.GetAt(column);
  CReportColumnOrder& order = report_.columns_.GetGroupsOrder();
  if (!report_.IsCreated() || added == nullptr || order.IndexOf(added) >= 0) return;
  order.Add(added);
  report_.Populate();
}

void CReportHeader::NotifyUngrouped(int column) {
  CReportColumnOrder& order = report_.columns_.GetGroupsOrder();
  std::vector<const CReportColumn*> kept = order.GetColumns();
  if (!report_.IsCreated() || std::erase(kept, report_.columns_.GetAt(column)) == 0) return;
  order.Clear();
  for (const CReportColumn* each : kept) order.Add(each);
  report_.Populate();
}

}  // namespace tarn
