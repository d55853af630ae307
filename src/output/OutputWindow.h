#pragma once

#include <string>

#include "widgets/BrowserCtrl.h"
#include "widgets/Wnd.h"

namespace tarn {

// A page in a window, of a log for example, whose links to places in sources the host hears of: it
// gets kMsgOpenFileAtLine for "err://FILE:LINE". "lnk://" leads nowhere; every other address is the
// page's own matter.
class COutputWindow final : public CWnd {
 public:
  explicit COutputWindow(WindowHandle host);
  ~COutputWindow() override;

  CBrowserCtrl& GetBrowser() { return browser; }

 protected:
  bool OnCreate() override;
  void OnSize(Size size) override;

 private:
  bool MayNavigate(const std::string& address) const;

  WindowHandle hostWindow;
  CBrowserCtrl browser;
};

}  // namespace tarn
