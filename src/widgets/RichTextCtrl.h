#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/RichText.h"
#include "widgets/Wnd.h"

namespace tarn {

class RichTextPeer : public WindowPeer {
 public:
  // This range was inserted before the last character; the runs that overlap it are the last ones.
  virtual void OnTextAppended(TextRange /*range*/) {}
  // Any other change: the whole text has to be read again.
  virtual void OnTextReplaced() {}
  virtual void OnSelectionChanged() {}
  // Sets `position` to the byte of the text that is drawn at the point, nullopt if there is none.
  // Returns false to let the control compute it.
  virtual bool HitTest(Point /*point*/, std::optional<std::size_t>& /*position*/) { return false; }
};

// Read-only text with colours, weight and links, in which the user can select. It always ends in
// the newline of its last, empty paragraph. The cost of appending does not depend on the length of
// the existing text.
class CRichTextCtrl : public CWnd {
 public:
  // A mouse event on a link. The handler may destroy the control.
  using LinkHandler = std::function<void(const std::string& target, const MouseEvent& event)>;

  const std::string& GetText() const { return text_; }
  // Runs in order; they cover the text except for its last character.
  const std::vector<RichTextRun>& GetRuns() const { return runs_; }
  // Returns null if there is no link.
  const std::string* GetLinkAt(std::size_t position) const;

  // Inserts rich text (see ReadRichText()) before the last character and moves the insertion point
  // after it, which clears the selection unless the user has made it.
  void AppendRichText(std::string_view richText);
  // Removes all except the last character.
  void Clear();

  TextRange GetSelection() const { return selection_; }
  // Clamped to the length of the text.
  void SetSelection(TextRange range);
  std::string GetSelectedText() const {
    return text_.substr(selection_.start, selection_.Length());
  }
  // Copies the selection to the clipboard. No-op without a selection.
  void Copy();
  // Copies and removes the selection, except for the last character.
  void Cut();

  void SetLinkHandler(LinkHandler handler) { onLink_ = std::move(handler); }

  // --- Called by the toolkit ---

  void NotifySelected(TextRange range);
  // The user activated the link by keyboard; reported like a release of the left mouse button.
  void NotifyLinkKey(std::size_t position);

 protected:
  virtual void OnSelectionChanged() {}
  void OnMouse(const MouseEvent& event) override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  RichTextPeer* Drawing() { return static_cast<RichTextPeer*>(GetPeer()); }
  std::optional<std::size_t> HitTest(Point point);
  void NotifyLink(std::size_t position, const MouseEvent& event);
  void Remove(TextRange range);

  std::string text_ = "\n";
  std::vector<RichTextRun> runs_;
  TextRange selection_;
  bool isUsersSelection_ = false;
  LinkHandler onLink_;
};

}  // namespace tarn
