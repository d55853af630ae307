#include "widgets/ComboBox.h"

#include <utility>

#include "platform/text/Text.h"
#include "widgets/Toolkit.h"

namespace tarn {

int CComboBox::AddString(std::string entryText, const void* data) {
  entries_.push_back({std::move(entryText), data});
  if (Drawing()) Drawing()->OnEntriesChanged();
  return GetCount() - 1;
}

void CComboBox::ResetContent() {
  entries_.clear();
  selected_ = -1;
  if (Drawing()) Drawing()->OnEntriesChanged();
}

const std::string& CComboBox::GetText(int index) const {
  static const std::string none;
  return Holds(index) ? entries_[static_cast<std::size_t>(index)].text : none;
}

const void* CComboBox::GetItemData(int index) const {
  return Holds(index) ? entries_[static_cast<std::size_t>(index)].data : nullptr;
}

void CComboBox::SetCurSel(int index) {
  if (!Holds(index)) index = -1;
  if (index == selected_) return;
  selected_ = index;
  if (Drawing()) Drawing()->OnSelectionChanged();
}

int CComboBox::SelectString(std::string_view beginning) {
  for (int index = 0; index < GetCount(); ++index) {
    if (!EqualNoCase(std::string_view(GetText(index)).substr(0, beginning.size()), beginning)) {
      continue;
    }
    SetCurSel(index);
    return index;
  }
  return -1;
}

void CComboBox::NotifySelected(int index) {
  if (!IsUsable() || !Holds(index) || index == selected_) return;
  SetCurSel(index);
  NotifyUsed();
}

std::unique_ptr<WindowPeer> CComboBox::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
