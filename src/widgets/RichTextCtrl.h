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
  // This range was put in front of the last character; the runs that reach into it are the last.
  virtual void OnTextAppended(TextRange /*range*/) {}
  // Something else happened to the text: all of it is to be taken anew.
  virtual void OnTextReplaced() {}
  virtual void OnSelectionChanged() {}
  // Gives the byte of the text that is drawn there, nothing beside the text. False for a peer that
  // leaves this to the control.
  virtual bool HitTest(Point /*point*/, std::optional<std::size_t>& /*position*/) { return false; }
};

// Text with colours, weight and links that the user reads and selects but does not change. It ends
// in the newline of its last, empty paragraph, which is always there. What it costs to append does
// not depend on what stands already.
class CRichTextCtrl : public CWnd {
 public:
  // A mouse event over a link. It may end the control.
  using LinkHandler = std::function<void(const std::string& target, const MouseEvent& event)>;

  const std::string& GetText() const { return text; }
  // In order, together all but the last character.
  const std::vector<RichTextRun>& GetRuns() const { return runs; }
  // Null where there is no link.
  const std::string* GetLinkAt(std::size_t position) const;

  // Puts rich text (see ReadRichText) in front of the last character and the insertion point behind
  // it. There the selection ends therefore, but for one that the user has made, which stays.
  void AppendRichText(std::string_view richText);
  // Removes all but the last character.
  void Clear();

  TextRange GetSelection() const { return selection; }
  // Cut to the text.
  void SetSelection(TextRange range);
  std::string GetSelectedText() const { return text.substr(selection.start, selection.Length()); }
  // To the clipboard; nothing without a selection.
  void Copy();
  // Copies and removes the selection. The last character stays.
  void Cut();

  void SetLinkHandler(LinkHandler handler) { onLink = std::move(handler); }

  // --- From the toolkit ---

  void NotifySelected(TextRange range);
  // The user follows the link there by keyboard; it is told as a release of the left button.
  void NotifyLinkKey(std::size_t position);

 protected:
  virtual void OnSelectionChanged() {}
  void OnMouse(const MouseEvent& event) override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  RichTextPeer* Drawing() { return static_cast<RichTextPeer*>(GetPeer()); }
  std::optional<std::size_t> HitTest(Point point);
  void TellLink(std::size_t position, const MouseEvent& event);
  void Remove(TextRange range);

  std::string text = "\n";
  std::vector<RichTextRun> runs;
  TextRange selection;
  bool isUsersSelection = false;
  LinkHandler onLink;
};

}  // namespace tarn
