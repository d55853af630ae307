#include "widgets/Edit.h"

#include "widgets/Toolkit.h"

namespace tarn {

void CEdit::SetReadOnly(bool readOnly) {
  if (readOnly == isReadOnly) return;
  isReadOnly = readOnly;
  if (EditPeer* drawing = Drawing()) drawing->OnReadOnlyChanged();
}

void CEdit::SetSelection(TextRange range) {
  range = range.Within(GetControlText().size());
  if (range == GetSelection()) return;
  selection = range;
  if (EditPeer* drawing = Drawing()) drawing->OnSelectionChanged();
}

void CEdit::NotifyTextEdited(const std::string& newText, TextRange newSelection) {
  if (!IsCreated() || isReadOnly) return;
  AdoptWindowText(newText);
  selection = newSelection.Within(newText.size());
  OnTextEdited();
}

void CEdit::NotifySelected(TextRange range) {
  selection = range.Within(GetControlText().size());
}

bool CEdit::OnCreate() {
  selection = {};
  SetReadOnly((GetStyle() & kEditReadOnly) != 0);
  return true;
}

std::unique_ptr<WindowPeer> CEdit::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
