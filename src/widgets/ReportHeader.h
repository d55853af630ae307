#pragma once

#include "widgets/Geometry.h"

namespace tarn {

class CReportColumn;
class CReportControl;

// Header row of a report's columns. Part of a CReportControl.
class CReportHeader {
 public:
  explicit CReportHeader(CReportControl& control) : report_(control) {}

  // Also groups the rows by the sorted column.
  void ShowItemsInGroups(bool show);
  bool IsShowItemsInGroups() const { return showsInGroups_; }
  // Changes to the columns that the user may make with the mouse.
  void AllowColumnRemove(bool allow) { mayRemove_ = allow; }
  bool IsColumnRemoveAllowed() const { return mayRemove_; }
  void AllowColumnReorder(bool allow) { mayReorder_ = allow; }
  bool IsColumnReorderAllowed() const { return mayReorder_; }
  // Sizes a column to its caption and cells. Measures the visible cells and, of all others, only
  // the 1,000 with the longest strings; so it may miss a wider cell among the rest, whose string is
  // shorter but has wider letters.
  void BestFit(CReportColumn& column);

  // --- Called by the toolkit: user actions ---

  // Sorts by the column, or reverses the order if the rows are already sorted by it.
  void NotifyClicked(int column);
  void NotifyRightClicked(int column, Point screen);
  // Passes the width that the column gains or loses to the auto-size columns on its right, as far
  // as they allow it, so that the total width is unchanged.
  void NotifyResized(int column, int width);
  // Adds the column as the innermost grouping column, or removes it.
  void NotifyGrouped(int column);
  void NotifyUngrouped(int column);

 private:
  CReportControl& report_;
  bool showsInGroups_ = false;
  bool mayRemove_ = true;
  bool mayReorder_ = true;
};

}  // namespace tarn
