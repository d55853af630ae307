#pragma once

#include <memory>
#include <string>

#include "widgets/TextRange.h"
#include "widgets/Wnd.h"

namespace tarn {

// Bits of an edit's style.
inline constexpr std::uint32_t kEditMultiLine = 0x0004;
inline constexpr std::uint32_t kEditAutoScroll = 0x0080;  // sideways, with the text
inline constexpr std::uint32_t kEditReadOnly = 0x0800;

class EditPeer : public WindowPeer {
 public:
  virtual void OnReadOnlyChanged() {}
  virtual void OnSelectionChanged() {}
};

// A field that the user types into. Its text is the window's text. A toolkit edits by itself and
// tells the result; a key goes through NotifyKey first and is the toolkit's only when that says no.
class CEdit : public CWnd {
 public:
  bool IsMultiLine() const { return (GetStyle() & kEditMultiLine) != 0; }
  // The style says it first.
  bool IsReadOnly() const { return isReadOnly; }
  void SetReadOnly(bool readOnly);

  TextRange GetSelection() const { return selection.Within(GetWindowText().size()); }
  // Cut to the text.
  void SetSelection(TextRange range);
  void SelectAll() { SetSelection({0, GetWindowText().size()}); }

  // --- From the toolkit ---

  // The user has changed the text and left the selection so. Nothing while it is read only.
  void NotifyTextEdited(const std::string& newText, TextRange newSelection);
  void NotifySelected(TextRange range);

 protected:
  // The user has changed the text.
  virtual void OnTextEdited() {}
  // Sets the state up from the style; a class that replaces it calls it.
  bool OnCreate() override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  EditPeer* Drawing() { return static_cast<EditPeer*>(GetPeer()); }

  bool isReadOnly = false;
  TextRange selection;
};

}  // namespace tarn
