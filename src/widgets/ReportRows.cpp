#include "widgets/ReportRows.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/text/Text.h"

namespace tarn {

namespace {

// A record's value in a column, for comparison.
struct SortKey {
  int number = 0;
  std::string text;
};

SortKey KeyOf(const CReportRecord& record, const CReportColumn& column) {
  const CReportRecordItem* item = record.GetItem(column.GetIndex());
  if (item == nullptr) return {};
  if (item->HasCheckbox()) return {item->IsChecked() ? 1 : 0, {}};
  if (column.GetIconId() != CReportColumn::kNoIcon) return {item->GetIconIndex(), {}};
  return {0, item->GetCaption()};
}

int Compare(const SortKey& a, const SortKey& b) {
  if (a.number != b.number) return a.number < b.number ? -1 : 1;
  return CompareNoCase(a.text, b.text);
}

std::string ValueText(const SortKey& key, const CReportColumn& column) {
  return column.GetIconId() == CReportColumn::kNoIcon ? key.text : ToDecimal(key.number);
}

}  // namespace

const CReportRow* ReportRows::GetAt(int index) const {
  const auto place = static_cast<std::size_t>(index);
  return index < 0 || place >= rows_.size() ? nullptr : &rows_[place];
}

void ReportRows::Clear() {
  rows_.clear();
  groups_.clear();
}

void ReportRows::Build(const CReportRecords& records, bool inGroups) {
  Clear();
  std::vector<const CReportColumn*> groupColumns = columns_.GetGroupsOrder().GetColumns();
  const CReportColumn* sorted = columns_.GetSortColumn();
  if (groupColumns.empty() && inGroups && sorted != nullptr) groupColumns.push_back(sorted);
  RecordList list = InOrder(records);
  if (groupColumns.empty()) {
    rows_.reserve(list.size());
    for (CReportRecord* const record : list) AddRecord(*record, 0);
    return;
  }
  // Stable sort from the innermost to the outermost column, so that equal rows keep the order of
  // the inner columns.
  for (auto column = groupColumns.rbegin(); column != groupColumns.rend(); ++column) {
    SortBy(**column, !(*column)->IsSorted() || (*column)->IsSortedAscending(), list);
  }
  AddGrouped(list, groupColumns);
}

int ReportRows::Extend(const CReportRecords& records, int first) {
  if (!columns_.GetGroupsOrder().GetColumns().empty()) return -1;
  const CReportColumn* sorted = columns_.GetSortColumn();
  if (sorted == nullptr) {
    const int behindOld = GetCount();
    for (int i = first; i < records.GetCount(); ++i) AddRecord(*records.GetAt(i), 0);
    return behindOld;
  }
  // Would have to skip the rows of children.
  if (GetCount() != first) return -1;
  for (int i = first; i < records.GetCount(); ++i) {
    if (records.GetAt(i)->IsExpanded() && records.GetAt(i)->HasChildren()) return -1;
  }
  const bool ascending = sorted->IsSortedAscending();
  std::ptrdiff_t changed = GetCount();
  for (int i = first; i < records.GetCount(); ++i) {
    CReportRecord* const record = records.GetAt(i);
    const SortKey key = KeyOf(*record, *sorted);
    const auto place = std::upper_bound(
        rows_.begin(), rows_.end(), key, [&](const SortKey& own, const CReportRow& other) {
          const int order = Compare(own, KeyOf(*other.GetRecord(), *sorted));
          return ascending ? order < 0 : order > 0;
        });
    changed = std::min(changed, place - rows_.begin());
    rows_.emplace(place, record, nullptr, 0);
  }
  return static_cast<int>(changed);
}

bool ReportRows::IsOpen(const CReportRow& row) const {
  return row.IsGroup() ? closedGroups_.count(row.GetGroup()->key) == 0
                       : row.GetRecord()->IsExpanded();
}

bool ReportRows::SetOpen(const CReportRow& row, bool open) {
  if (open == IsOpen(row)) return false;
  if (!row.IsGroup()) {
    if (!row.GetRecord()->HasChildren()) return false;
    row.GetRecord()->SetExpanded(open);
  } else if (open) {
    closedGroups_.erase(row.GetGroup()->key);
  } else {
    closedGroups_.insert(row.GetGroup()->key);
  }
  return true;
}

void ReportRows::SortBy(const CReportColumn& column, bool ascending, RecordList& list) const {
  struct Keyed {
    SortKey key;
    CReportRecord* record;
  };
  std::vector<Keyed> keyed;
  keyed.reserve(list.size());
  for (CReportRecord* const record : list) keyed.push_back({KeyOf(*record, column), record});
  std::stable_sort(keyed.begin(), keyed.end(), [ascending](const Keyed& a, const Keyed& b) {
    const int order = Compare(a.key, b.key);
    return ascending ? order < 0 : order > 0;
  });
  std::transform(keyed.begin(), keyed.end(), list.begin(),
                 [](const Keyed& each) { return each.record; });
}

ReportRows::RecordList ReportRows::InOrder(const CReportRecords& records) const {
  RecordList list;
  list.reserve(static_cast<std::size_t>(records.GetCount()));
  for (int i = 0; i < records.GetCount(); ++i) list.push_back(records.GetAt(i));
  const CReportColumn* sorted = columns_.GetSortColumn();
  if (sorted != nullptr) SortBy(*sorted, sorted->IsSortedAscending(), list);
  return list;
}

void ReportRows::AddRecord(CReportRecord& record, int depth) {
  rows_.emplace_back(&record, nullptr, depth);
  if (!record.IsExpanded() || !record.HasChildren()) return;
  for (CReportRecord* const child : InOrder(record.GetChildren())) AddRecord(*child, depth + 1);
}

void ReportRows::AddGrouped(const RecordList& list,
                            const std::vector<const CReportColumn*>& groupColumns) {
  const std::size_t levels = groupColumns.size();
  std::vector<SortKey> current(levels);
  std::vector<const ReportGroup*> open(levels, nullptr);
  bool isFirst = true;
  for (CReportRecord* const record : list) {
    std::size_t same = 0;
    std::vector<SortKey> own;
    for (const CReportColumn* const column : groupColumns) own.push_back(KeyOf(*record, *column));
    while (!isFirst && same < levels && Compare(own[same], current[same]) == 0) ++same;
    isFirst = false;
    bool isHidden = false;
    for (std::size_t level = 0; level < levels; ++level) {
      if (level >= same) {
        const std::string value = ValueText(own[level], *groupColumns[level]);
        const std::string above = level == 0 ? std::string() : open[level - 1]->key;
        groups_.push_back(
            {groupColumns[level]->GetCaption() + ": " + value, above + '\x1F' + FoldCase(value)});
        open[level] = &groups_.back();
        if (!isHidden) rows_.emplace_back(nullptr, open[level], static_cast<int>(level));
      }
      isHidden = isHidden || closedGroups_.count(open[level]->key) != 0;
    }
    current = std::move(own);
    if (!isHidden) AddRecord(*record, static_cast<int>(levels));
  }
}

}  // namespace tarn
