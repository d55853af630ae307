#include "widgets/ReportRecord.h"

namespace tarn {

namespace {

// Returns null if the index is out of range.
template <class T>
T* At(const std::vector<std::unique_ptr<T>>& list, int index) {
  const auto place = static_cast<std::size_t>(index);
  return index < 0 || place >= list.size() ? nullptr : list[place].get();
}

}  // namespace

CReportRecordItem::RareParts& CReportRecordItem::Rare() {
  if (rare == nullptr) rare = std::make_unique<RareParts>();
  return *rare;
}

int CReportRecordItem::FindHyperlink(int position) const {
  for (int i = 0; i < GetHyperlinkCount(); ++i) {
    const int behindStart = position - GetHyperlink(i).GetStart();
    if (behindStart >= 0 && behindStart < GetHyperlink(i).GetLength()) return i;
  }
  return -1;
}

CReportRecord::CReportRecord() = default;

CReportRecord::~CReportRecord() = default;

CReportRecordItem* CReportRecord::AddItem(std::unique_ptr<CReportRecordItem> item) {
  items.push_back(std::move(item));
  return items.back().get();
}

CReportRecordItem* CReportRecord::GetItem(int column) const {
  return At(items, column);
}

CReportRecords& CReportRecord::GetChildren() {
  if (children == nullptr) children = std::make_unique<CReportRecords>();
  return *children;
}

bool CReportRecord::HasChildren() const {
  return children != nullptr && children->GetCount() > 0;
}

CReportRecord* CReportRecords::Add(std::unique_ptr<CReportRecord> record) {
  records.push_back(std::move(record));
  return records.back().get();
}

CReportRecord* CReportRecords::GetAt(int index) const {
  return At(records, index);
}

}  // namespace tarn
