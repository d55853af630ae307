#pragma once

#include <memory>

#include "widgets/Wnd.h"

namespace tarn {

enum class StaticKind {
  Label,  // shows the window's text, broken into lines where it has to be
  Frame,  // an empty place with an edge
};

// Something to look at.
class CStatic : public CWnd {
 public:
  explicit CStatic(StaticKind staticKind) : kind(staticKind) {}
  StaticKind GetKind() const { return kind; }

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  StaticKind kind;
};

}  // namespace tarn
