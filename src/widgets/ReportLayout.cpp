#include "widgets/ReportLayout.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "widgets/ReportControl.h"
#include "widgets/Toolkit.h"

namespace tarn {

int ReportLayout::GetRowsPerPage() const {
  const int above = kHeaderHeight + (report_.IsGroupByVisible() ? kGroupBoxHeight : 0);
  return std::max(1, (report_.GetClientRect().Height() - above) / kRowHeight);
}

int ReportLayout::PictureWidth() const {
  return report_.GetImageList() == nullptr ? kPictureWidth
                                           : report_.GetImageList()->GetImageSize().width;
}

std::vector<ReportLayout::ColumnSpan> ReportLayout::LayOutColumns() const {
  std::vector<ColumnSpan> spans;
  int total = 0;
  int elastic = 0;
  for (int i = 0; i < report_.GetColumns().GetCount(); ++i) {
    const CReportColumn& column = *report_.GetColumns().GetAt(i);
    if (!column.IsVisible()) continue;
    spans.push_back({i, 0, column.GetWidth()});
    total += column.GetWidth();
    if (column.IsAutoSize()) elastic += column.GetWidth();
  }
  int surplus = report_.GetClientRect().Width() - total;
  int left = 0;
  for (ColumnSpan& span : spans) {
    span.left = left;
    if (elastic > 0 && report_.GetColumns().GetAt(span.column)->IsAutoSize()) {
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

ReportHit ReportLayout::HitTest(Point point) const {
  if (!report_.GetClientRect().Contains(point)) return {};
  int top = report_.IsGroupByVisible() ? kGroupBoxHeight : 0;
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
  const int row = report_.GetTopRow() + (point.y - top) / kRowHeight;
  return report_.GetRows().GetAt(row) == nullptr ? hit : HitCell(point, row);
}

ReportHit ReportLayout::HitCell(Point point, int row) const {
  ReportHit hit;
  hit.area = ReportHit::Area::Row;
  hit.row = row;
  const std::vector<ColumnSpan> spans = LayOutColumns();
  const auto span = std::find_if(spans.begin(), spans.end(), [point](const ColumnSpan& each) {
    return point.x >= each.left && point.x < each.left + each.width;
  });
  if (span == spans.end()) return hit;
  hit.column = span->column;
  const CReportColumn& column = *report_.GetColumns().GetAt(span->column);
  const CReportRow* shown = report_.GetRows().GetAt(row);
  if (shown == nullptr) return hit;
  int x = point.x - span->left - kCellMargin;
  if (column.IsTreeColumn() || shown->IsGroup()) {
    x -= shown->GetDepth() * kOpenerWidth;
    if (report_.CanOpen(*shown) && x >= 0 && x < kOpenerWidth) hit.part = ReportHit::Part::Opener;
    x -= kOpenerWidth;
  }
  const CReportRecordItem* item = report_.GetItemAt(row, column.GetIndex());
  if (item == nullptr) return hit;
  if (item->HasCheckbox() && x >= 0 && x < PictureWidth()) hit.part = ReportHit::Part::Check;
  if (item->GetHyperlinkCount() == 0 || x < 0) return hit;
  const std::string caption = item->GetCaption();
  WindowToolkit& toolkit = WindowToolkit::Current();
  const auto widthOf = [&](std::size_t bytes) {
    return toolkit.MeasureText(report_.GetFont(), std::string_view(caption).substr(0, bytes)).width;
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

int ReportLayout::MeasureCell(int row, const CReportColumn& column) const {
  const CReportRow* shown = report_.GetRows().GetAt(row);
  const CReportRecordItem* item = report_.GetItemAt(row, column.GetIndex());
  if (item == nullptr) return 0;
  int width = 2 * kCellMargin;
  if (column.IsTreeColumn()) width += (shown->GetDepth() + 1) * kOpenerWidth;
  if (item->HasCheckbox() || item->GetIconIndex() >= 0) width += PictureWidth();
  return width + WindowToolkit::Current().MeasureText(report_.GetFont(), item->GetCaption()).width;
}

}  // namespace tarn
