#include "widgets/Static.h"

#include "widgets/Toolkit.h"

namespace tarn {

std::unique_ptr<WindowPeer> CStatic::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
