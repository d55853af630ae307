#pragma once

#include <functional>
#include <memory>
#include <string>

#include "widgets/Wnd.h"

namespace tarn {

class BrowserPeer : public WindowPeer {
 public:
  // Another page is wanted, see GetAddress.
  virtual void OnNavigate() {}
};

// Shows a page. Where its links lead is asked of a handler first.
class CBrowserCtrl : public CWnd {
 public:
  // False keeps the page where it is. It may end the control.
  using NavigationHandler = std::function<bool(const std::string& address)>;

  void SetNavigationHandler(NavigationHandler handler) { mayNavigate = std::move(handler); }

  // Shows the page if the handler has nothing against it.
  void Navigate(const std::string& newAddress);
  // Of the page that is shown; empty for none.
  const std::string& GetAddress() const { return address; }

  // --- From the toolkit ---

  // The user follows a link. True when the page may change, which the toolkit does then by itself.
  bool NotifyNavigating(const std::string& newAddress);

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  BrowserPeer* Drawing() { return static_cast<BrowserPeer*>(GetPeer()); }

  std::string address;
  NavigationHandler mayNavigate;
};

}  // namespace tarn
