#pragma once

#include <memory>
#include <string>
#include <utility>

#include "widgets/Control.h"

namespace tarn {

// A label that opens an address when clicked. The window text is the visible text.
class CHyperlinkCtrl : public CControl {
 public:
  // The address is opened by the desktop; if it is empty, a click does nothing.
  void SetAddress(std::string newAddress) { address_ = std::move(newAddress); }
  const std::string& GetAddress() const { return address_; }

  // --- Called by the toolkit ---

  void NotifyClicked();

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  std::string address_;
};

}  // namespace tarn
