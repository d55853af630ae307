#pragma once

#include <tarn/commands.h>

#include <string>

#include "output/OutputViews.h"
#include "platform/files/FileSystem.h"
#include "widgets/RichTextCtrl.h"
#include "widgets/Wnd.h"

namespace tarn {

// Window that shows the running log: one line for each element of the log tree, with links. A click
// on a link notifies the host of the source position, the help file or the time stamp. Main thread
// only.
class COutputEdit final : public CWnd, public ILogView {
 public:
  // `files` is borrowed, must outlive this window, and is used to check that a help file exists.
  // `host` receives the messages for clicks; 0 for no host.
  COutputEdit(FileSystem& files, WindowHandle host);
  ~COutputEdit() override;

  // No-op if the window hasn't been created.
  void AddMessage(const CXmlNode& node) override;
  void Clear() override;

  CRichTextCtrl& GetEdit() { return edit_; }

 protected:
  bool OnCreate() override;
  void OnSize(Size size) override;
  bool OnCommand(int command) override;
  bool OnContextMenu(Point screen) override;

 private:
  void OnLink(const std::string& target, const MouseEvent& event);
  void SendHost(std::uint32_t message, const std::string& path, std::intptr_t lParam) const;

  FileSystem& disk_;
  WindowHandle hostWindow_;
  CWnd margin_;
  CRichTextCtrl edit_;
};

}  // namespace tarn
