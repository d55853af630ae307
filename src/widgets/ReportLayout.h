#pragma once

#include <vector>

#include "widgets/Geometry.h"

namespace tarn {

class CReportColumn;
class CReportControl;

// Result of a hit test: a position in a report.
struct ReportHit {
  enum class Area { Nowhere, GroupBox, Header, Row };
  enum class Part { Cell, Opener, Check };
  Area area = Area::Nowhere;
  Part part = Part::Cell;
  int row = -1;
  int column = -1;
  int hyperlink = -1;
  friend bool operator==(const ReportHit&, const ReportHit&) = default;
};

// Geometry of a report, from top to bottom: the group box, if visible, the header and the rows, all
// of fixed height. Computed from the control's state at each call. A peer may override rows and hit
// tests, but not the widths of the columns.
class ReportLayout {
 public:
  static constexpr int kGroupBoxHeight = 32;
  static constexpr int kHeaderHeight = 20;
  static constexpr int kRowHeight = 16;
  static constexpr int kCellMargin = 4;
  static constexpr int kOpenerWidth = 16;
  static constexpr int kPictureWidth = 16;  // without an image list
  static constexpr int kLeastElasticWidth = 40;

  explicit ReportLayout(const CReportControl& report) : report_(report) {}

  struct ColumnSpan {
    int column = 0;
    int left = 0;
    int width = 0;
  };
  // Computes positions and widths of the visible columns from left to right. The auto-size columns
  // share the surplus or missing width as long as none becomes narrower than kLeastElasticWidth.
  std::vector<ColumnSpan> LayOutColumns() const;
  // Returns the position at a point in client coordinates.
  ReportHit HitTest(Point point) const;
  // Number of whole rows that fit below the header, at least 1.
  int GetRowsPerPage() const;
  // Width that a cell needs to be fully visible.
  int MeasureCell(int row, const CReportColumn& column) const;

 private:
  ReportHit HitCell(Point point, int row) const;
  int PictureWidth() const;

  const CReportControl& report_;
};

}  // namespace tarn
