#pragma once

#include <string>

#include "output/OutputViews.h"
#include "platform/files/FileSystem.h"
#include "widgets/RichTextCtrl.h"
#include "widgets/Wnd.h"

namespace tarn {

// Commands of the log view, by the numbers that hosts know.
enum LogViewCommand : int {
  kCmdLogClear = 0xE121,
  kCmdLogCopy = 0xE122,
  kCmdLogCut = 0xE123,
};

// The running log as a window: a line for each element of the log tree, with links that tell the
// host of a place in a source, a help file or a time stamp. Host's thread only.
class COutputEdit final : public CWnd, public ILogView {
 public:
  // `files` is borrowed for the window's life and is asked whether a help file exists. `host` gets
  // the messages of clicks; 0 for none.
  COutputEdit(FileSystem& files, WindowHandle host);
  ~COutputEdit() override;

  // Nothing as long as the window does not stand.
  void AddMessage(const CXmlNode& node) override;
  void Clear() override;

  CRichTextCtrl& GetEdit() { return edit; }

 protected:
  bool OnCreate() override;
  void OnSize(Size size) override;
  bool OnCommand(int command) override;
  bool OnContextMenu(Point screen) override;

 private:
  void OnLink(const std::string& target, const MouseEvent& event);
  void SendHost(std::uint32_t message, const std::string& path, std::intptr_t lParam) const;

  FileSystem& disk;
  WindowHandle hostWindow;
  CWnd margin;
  CRichTextCtrl edit;
};

}  // namespace tarn
