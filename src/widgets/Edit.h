#pragma once

#include <memory>
#include <string>

#include "widgets/TextRange.h"
#include "widgets/Wnd.h"

namespace tarn {

// Style bits of an edit field.
inline constexpr std::uint32_t kEditMultiLine = 0x0004;
inline constexpr std::uint32_t kEditAutoScroll = 0x0080;  // scrolls horizontally while typing
inline constexpr std::uint32_t kEditReadOnly = 0x0800;

class EditPeer : public WindowPeer {
 public:
  virtual void OnReadOnlyChanged() {}
  virtual void OnSelectionChanged() {}
};

// A text input field. Its content is the window text. The toolkit implements the editing and
// reports the result; each key is offered to NotifyKey() first and handled by the toolkit only if
// that returns false.
class CEdit : public CWnd {
 public:
  bool IsMultiLine() const { return (GetStyle() & kEditMultiLine) != 0; }
  // Initialised from the style.
  bool IsReadOnly() const { return isReadOnly_; }
  // Overrides the read-only bit of the style. The program can still change the text.
  void SetReadOnly(bool readOnly);

  TextRange GetSelection() const { return selection_.Within(GetControlText().size()); }
  // Clamped to the length of the text.
  void SetSelection(TextRange range);
  void SelectAll() { SetSelection({0, GetControlText().size()}); }

  // --- Called by the toolkit ---

  // The user edited the text; `newSelection` is the selection after the edit. Ignored if read-only.
  void NotifyTextEdited(const std::string& newText, TextRange newSelection);
  // The user changed the selection.
  void NotifySelected(TextRange range);

 protected:
  // The user edited the text.
  virtual void OnTextEdited() {}
  // Initialises the state from the style; overrides must call it.
  bool OnCreate() override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  EditPeer* Drawing() { return static_cast<EditPeer*>(GetPeer()); }

  bool isReadOnly_ = false;
  TextRange selection_;
};

}  // namespace tarn
