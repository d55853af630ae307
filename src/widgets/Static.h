#pragma once

#include <memory>

#include "widgets/Wnd.h"

namespace tarn {

enum class StaticKind {
  Label,  // shows the window text, with line breaks where necessary
  Frame,  // an empty rectangle with a border
};

// A control without interaction.
class CStatic : public CWnd {
 public:
  // The kind is fixed for the lifetime of the control.
  explicit CStatic(StaticKind staticKind) : kind_(staticKind) {}
  StaticKind GetKind() const { return kind_; }

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  StaticKind kind_;
};

}  // namespace tarn
