#pragma once

#include <memory>
#include <string>
#include <utility>

#include "widgets/Control.h"

namespace tarn {

// A text that opens an address when it is clicked. The window's text is what it shows.
class CHyperlinkCtrl : public CControl {
 public:
  // For the desktop to open; empty: a click does nothing.
  void SetAddress(std::string newAddress) { address = std::move(newAddress); }
  const std::string& GetAddress() const { return address; }

  // --- From the toolkit ---

  void NotifyClicked();

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  std::string address;
};

}  // namespace tarn
