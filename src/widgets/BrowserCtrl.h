#pragma once

#include <functional>
#include <memory>
#include <string>

#include "widgets/Wnd.h"

namespace tarn {

class BrowserPeer : public WindowPeer {
 public:
  // A different page is to be shown; see GetAddress().
  virtual void OnNavigate() {}
};

// Displays a page. A handler is consulted before a link is followed.
class CBrowserCtrl : public CWnd {
 public:
  // Returning false prevents the navigation. The handler may destroy the control.
  using NavigationHandler = std::function<bool(const std::string& address)>;

  void SetNavigationHandler(NavigationHandler handler) { mayNavigate_ = std::move(handler); }

  // Shows the page unless the handler refuses.
  void Navigate(const std::string& newAddress);
  // Address of the current page; empty if there is none.
  const std::string& GetAddress() const { return address_; }

  // --- Called by the toolkit ---

  // The user follows a link. Returns true if the page may change; the toolkit then loads it itself.
  bool NotifyNavigating(const std::string& newAddress);

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  BrowserPeer* Drawing() { return static_cast<BrowserPeer*>(GetPeer()); }

  std::string address_;
  NavigationHandler mayNavigate_;
};

}  // namespace tarn
