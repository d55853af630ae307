#include "widgets/ReportSelection.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tarn {

bool CReportSelectedRows::Contains(int row) const {
  return std::binary_search(indexes_.begin(), indexes_.end(), row);
}

const CReportRow* CReportSelectedRows::GetNextSelectedRow(int& position) const {
  const auto place = static_cast<std::size_t>(position);
  if (position < 0 || place >= indexes_.size()) {
    position = -1;
    return nullptr;
  }
  position = place + 1 < indexes_.size() ? position + 1 : -1;
  return rows_.GetAt(indexes_[place]);
}

bool ReportSelection::Select(std::vector<int> indexes, int focusedRow) {
  focusedRow_ = focusedRow;
  if (indexes == selected_.indexes_) return false;
  selected_.indexes_ = std::move(indexes);
  return true;
}

void ReportSelection::Clear() {
  selected_.indexes_.clear();
  focusedRow_ = -1;
  anchorRow_ = -1;
}

std::vector<int> ReportSelection::RangeTo(int row) const {
  const int from = anchorRow_ < 0 ? row : anchorRow_;
  std::vector<int> range;
  for (int each = std::min(from, row); each <= std::max(from, row); ++each) range.push_back(each);
  return range;
}

ReportSelection::Remembered ReportSelection::Remember() const {
  Remembered remembered;
  for (const int index : selected_.indexes_) {
    const CReportRow& row = *rows_.GetAt(index);
    if (row.IsGroup()) {
      remembered.groups.insert(row.GetGroup()->key);
    } else {
      remembered.records.insert(row.GetRecord());
    }
  }
  if (const CReportRow* focus = rows_.GetAt(focusedRow_)) {
    remembered.focusedRecord = focus->GetRecord();
    if (focus->IsGroup()) remembered.focusedGroup = focus->GetGroup()->key;
  }
  return remembered;
}

void ReportSelection::Restore(const Remembered& remembered) {
  const bool hadAny = focusedRow_ >= 0 || !selected_.indexes_.empty();
  Clear();
  for (int i = 0; hadAny && i < rows_.GetCount(); ++i) {
    const CReportRow& row = *rows_.GetAt(i);
    const bool isSelected = row.IsGroup() ? remembered.groups.count(row.GetGroup()->key) != 0
                                          : remembered.records.count(row.GetRecord()) != 0;
    if (isSelected) selected_.indexes_.push_back(i);
    const bool isFocused = row.IsGroup() ? row.GetGroup()->key == remembered.focusedGroup
                                         : row.GetRecord() == remembered.focusedRecord;
    if (isFocused) focusedRow_ = anchorRow_ = i;
  }
}

}  // namespace tarn
