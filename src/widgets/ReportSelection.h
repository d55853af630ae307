#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "widgets/ReportRows.h"

namespace tarn {

// The rows that the user has selected, in row order.
class CReportSelectedRows {
 public:
  explicit CReportSelectedRows(const ReportRows& reportRows) : rows_(reportRows) {}

  int GetCount() const { return static_cast<int>(indexes_.size()); }
  const std::vector<int>& GetIndexes() const { return indexes_; }
  bool Contains(int row) const;
  // Start of an iteration with GetNextSelectedRow(); -1 if nothing is selected.
  int GetFirstSelectedRowPosition() const { return indexes_.empty() ? -1 : 0; }
  // Returns the row at `position` and advances `position`, to -1 after the last one.
  const CReportRow* GetNextSelectedRow(int& position) const;

 private:
  friend class ReportSelection;
  const ReportRows& rows_;
  std::vector<int> indexes_;  // ascending
};

// Selection of a report: the selected rows, the focused row, and the anchor, which is the start of
// an extended selection. The row -1 means none.
class ReportSelection {
 public:
  explicit ReportSelection(const ReportRows& rows) : rows_(rows), selected_(rows) {}

  const CReportSelectedRows& GetSelected() const { return selected_; }
  int GetFocusedRow() const { return focusedRow_; }
  int GetAnchor() const { return anchorRow_; }
  void SetAnchor(int row) { anchorRow_ = row; }
  // `indexes` must be ascending. Returns whether the selected rows changed.
  bool Select(std::vector<int> indexes, int focusedRow);
  void Clear();
  // All rows between the anchor and `row`, inclusive; only `row` without an anchor.
  std::vector<int> RangeTo(int row) const;

  // The selection as records and groups.
  struct Remembered {
    std::unordered_set<const CReportRecord*> records;
    std::unordered_set<std::string> groups;
    const CReportRecord* focusedRecord = nullptr;
    std::string focusedGroup;
  };
  // Preserve the selection across a rebuild of the rows. The focused row becomes the anchor.
  Remembered Remember() const;
  void Restore(const Remembered& remembered);

 private:
  const ReportRows& rows_;
  CReportSelectedRows selected_;
  int focusedRow_ = -1;
  int anchorRow_ = -1;
};

}  // namespace tarn
