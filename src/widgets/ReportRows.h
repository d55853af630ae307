#pragma once

#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <vector>

#include "widgets/ReportColumns.h"
#include "widgets/ReportRecord.h"

namespace tarn {

// Records with the same value in a column.
struct ReportGroup {
  std::string text;  // column and value, for the user
  std::string key;   // values from the outermost group to this one
};

// A row of a report: a record or a group heading.
class CReportRow {
 public:
  CReportRow(CReportRecord* rowRecord, const ReportGroup* rowGroup, int rowDepth)
      : record_(rowRecord), group_(rowGroup), depth_(rowDepth) {}

  bool IsGroup() const { return group_ != nullptr; }
  // Null for a group.
  CReportRecord* GetRecord() const { return record_; }
  // Null for a record.
  const ReportGroup* GetGroup() const { return group_; }
  // Number of groups and records that it is nested in.
  int GetDepth() const { return depth_; }

 private:
  CReportRecord* record_;
  const ReportGroup* group_;
  int depth_;
};

// The rows of a report in display order: the records, sorted and grouped, each expanded one
// followed by its children. A full build is a stable merge sort per sort or grouping column;
// records that are added to a sorted report are inserted by binary search. Strings are compared
// case-insensitively, images and check boxes by number; the sort is stable. All pointers are
// borrowed.
class ReportRows {
 public:
  explicit ReportRows(const CReportColumns& reportColumns) : columns_(reportColumns) {}

  const std::vector<CReportRow>& All() const { return rows_; }
  int GetCount() const { return static_cast<int>(rows_.size()); }
  // Returns null if the index is out of range.
  const CReportRow* GetAt(int index) const;
  void Clear();

  // Rebuilds all rows. If `inGroups` is set and there is no grouping column, the rows are grouped
  // by the sorted column.
  void Build(const CReportRecords& records, bool inGroups);
  // Adds the records from `first` on, which were appended since the last build, and returns the
  // first row that has changed. Returns -1, with the rows unchanged, if a full Build() is needed.
  int Extend(const CReportRecords& records, int first);

  // Groups are initially expanded.
  bool IsOpen(const CReportRow& row) const;
  // Returns false if nothing changes. Otherwise the rows must be rebuilt.
  bool SetOpen(const CReportRow& row, bool open);

 private:
  using RecordList = std::vector<CReportRecord*>;

  void SortBy(const CReportColumn& column, bool ascending, RecordList& list) const;
  RecordList InOrder(const CReportRecords& records) const;
  void AddRecord(CReportRecord& record, int depth);
  void AddGrouped(const RecordList& list, const std::vector<const CReportColumn*>& groupColumns);

  const CReportColumns& columns_;
  std::vector<CReportRow> rows_;
  std::deque<ReportGroup> groups_;      // groups of the rows
  std::set<std::string> closedGroups_;  // by key
};

}  // namespace tarn
