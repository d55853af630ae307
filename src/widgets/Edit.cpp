#include "widgets/Edit.h"

#include "widgets/Toolkit.h"

namespace tarn {

void CEdit::SetReadOnly(bool readOnly) {
  if (readOnly == isReadOnly_) return;
  isReadOnly_ = readOnly;
  if (EditPeer* drawing = Drawing()) drawing->OnReadOnlyChanged();
}

void CEdit::SetSelection(TextRange range) {
  range = range.Within(GetControlText().size());
  if (range == GetSelection()) return;
  selection_ = range;
  if (EditPeer* drawing = Drawing()) drawing->OnSelectionChanged();
}

void CEdit::NotifyTextEdited(const std::string& newText, TextRange newSelection) {
  if (!IsCreated() || isReadOnly_) return;
  AdoptWindowText(newText);
  selection_ = newSelection.Within(newText.size());
  OnTextEdited();
}

void CEdit::NotifySelected(TextRange range) {
  selection_ = range.Within(GetControlText().size());
}

bool CEdit::OnCreate() {
  selection_ = {};
  SetReadOnly((GetStyle() & kEditReadOnly) != 0);
  return true;
}

std::unique_ptr<WindowPeer> CEdit::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
