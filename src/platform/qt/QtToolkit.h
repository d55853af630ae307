#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/qt/LoopBridge.h"
#include "platform/windowing/Toolkit.h"

namespace tarn {

// Shows the windows of a thread as widgets. While it lives it is the thread's toolkit and serves
// its loop. Made behind the application object and freed before it, on the same thread; every
// window goes first.
class QtToolkit : public WindowToolkit {
 public:
  QtToolkit();
  ~QtToolkit() override;
  QtToolkit(const QtToolkit&) = delete;
  QtToolkit& operator=(const QtToolkit&) = delete;

  using WindowToolkit::MakePeer;
  std::unique_ptr<WindowPeer> MakePeer(CWnd& window) override;
  std::unique_ptr<WindowPeer> MakePeer(CTipWindow& tip) override;
  std::unique_ptr<TreePeer> MakePeer(CTreeCtrl& tree) override;
  std::unique_ptr<EditPeer> MakePeer(CEdit& edit) override;
  std::unique_ptr<RichTextPeer> MakePeer(CRichTextCtrl& richText) override;

  Size MeasureText(const Font& font, std::string_view text) override;
  Color GetColor(SystemColor color) override;
  void SetCursor(CursorShape shape) override;
  void SetClipboardText(const std::string& text) override;
  void OpenAddress(const std::string& address) override;

 private:
  LoopBridge bridge;
  bool isWaiting = false;
};

}  // namespace tarn
