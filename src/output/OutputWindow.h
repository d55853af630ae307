#pragma once

#include <string>

#include "widgets/BrowserCtrl.h"
#include "widgets/Wnd.h"

namespace tarn {

// Window that shows an HTML page, for example a log. Sends kMsgOpenFileAtLine to the host for links
// of the form "err://FILE:LINE". "lnk://" leads nowhere; all other addresses are opened by the page
// itself.
class COutputWindow final : public CWnd {
 public:
  explicit COutputWindow(WindowHandle host);
  ~COutputWindow() override;

  CBrowserCtrl& GetBrowser() { return browser_; }

 protected:
  bool OnCreate() override;
  void OnSize(Size size) override;

 private:
  bool MayNavigate(const std::string& address) const;

  WindowHandle hostWindow_;
  CBrowserCtrl browser_;
};

}  // namespace tarn
