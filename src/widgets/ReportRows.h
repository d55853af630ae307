#pragma once

#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <vector>

#include "widgets/ReportColumns.h"
#include "widgets/ReportRecord.h"

namespace tarn {

// Records that have the same value in a column.
struct ReportGroup {
  std::string text;  // column and value, for the user
  std::string key;   // values from the outermost group to this one
};

// A line of a report: a record, or the heading of a group.
class CReportRow {
 public:
  CReportRow(CReportRecord* rowRecord, const ReportGroup* rowGroup, int rowDepth)
      : record(rowRecord), group(rowGroup), depth(rowDepth) {}

  bool IsGroup() const { return group != nullptr; }
  // Null for a group.
  CReportRecord* GetRecord() const { return record; }
  // Null for a record.
  const ReportGroup* GetGroup() const { return group; }
  // How many groups and records it lies below.
  int GetDepth() const { return depth; }

 private:
  CReportRecord* record;
  const ReportGroup* group;
  int depth;
};

// The rows of a report, in order: what the records look like, sorted and grouped, with those that
// are open followed by their children. Texts sort without regard to case, pictures and check boxes
// by number, equal ones in the order of the records. All pointers are borrowed.
class ReportRows {
 public:
  explicit ReportRows(const CReportColumns& reportColumns) : columns(reportColumns) {}

  const std::vector<CReportRow>& All() const { return rows; }
  int GetCount() const { return static_cast<int>(rows.size()); }
  // Null when there is no such row.
  const CReportRow* GetAt(int index) const;
  void Clear();

  // Makes the rows anew; `inGroups` makes a group of each value of the sorted column where nothing
  // else is grouped by.
  void Build(const CReportRecords& records, bool inGroups);
  // Takes in the records from `first` on, which were added since, and gives the number of the row
  // from which on rows have changed. -1 when the rows must be built anew; they are as before then.
  int Extend(const CReportRecords& records, int first);

  // Groups come up open.
  bool IsOpen(const CReportRow& row) const;
  // False when nothing changes. The rows must be built anew.
  bool SetOpen(const CReportRow& row, bool open);

 private:
  using RecordList = std::vector<CReportRecord*>;

  void SortBy(const CReportColumn& column, bool ascending, RecordList& list) const;
  RecordList InOrder(const CReportRecords& records) const;
  void AddRecord(CReportRecord& record, int depth);
  void AddGrouped(const RecordList& list, const std::vector<const CReportColumn*>& groupColumns);

  const CReportColumns& columns;
  std::vector<CReportRow> rows;
  std::deque<ReportGroup> groups;      // of the rows
  std::set<std::string> closedGroups;  // by key
};

// The rows that the user has selected, in their order.
class CReportSelectedRows {
 public:
  explicit CReportSelectedRows(const ReportRows& reportRows) : rows(reportRows) {}

  int GetCount() const { return static_cast<int>(indexes.size()); }
  const std::vector<int>& GetIndexes() const { return indexes; }
  bool Contains(int row) const;
  // A place to go on from; -1 for none.
  int GetFirstSelectedRowPosition() const { return indexes.empty() ? -1 : 0; }
  // The row at `position`, which moves to the next one, or to -1 behind the last.
  const CReportRow* GetNextSelectedRow(int& position) const;

 private:
  friend class CReportControl;
  const ReportRows& rows;
  std::vector<int> indexes;  // ascending
};

}  // namespace tarn
