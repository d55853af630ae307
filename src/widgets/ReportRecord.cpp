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
  if (rare_ == nullptr) rare_ = std::make_unique<RareParts>();
  return *rare_;
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
  items_.push_back(std::move(item));
  return items_.back().get();
}

CReportRecordItem* CReportRecord::GetItem(int column) const {
  return At(items_, column);
}

CReportRecords& CReportRecord::GetChildren() {
  if (children_ == nullptr) children_ = std::make_unique<CReportRecords>();
  return *children_;
}

bool CReportRecord::HasChildren() const {
  return children_ != nullptr && children_->GetCount() > 0;
}

CReportRecord* CReportRecords::Add(std::unique_ptr<CReportRecord> record) {
  records_.push_back(std::move(record));
  return records_.back().get();
}

CReportRecord* CReportRecords::GetAt(int index) const {
  return At(records_, index);
}

}  // namespace tarn
