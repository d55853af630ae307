#include "widgets/PropertySheet.h"

#include "widgets/Toolkit.h"

namespace tarn {

namespace {

constexpr int kHeaderHeight = 64;
constexpr int kButtonsHeight = 48;

}  // namespace

CPropertySheet::CPropertySheet(const std::string& caption, WindowHandle askedWindow)
    : ownerWindow(askedWindow) {
  SetControlText(caption);
}

void CPropertySheet::EnableFinish(bool enable) {
  if (enable == isFinishEnabled) return;
  isFinishEnabled = enable;
  if (GetPeer()) static_cast<PropertySheetPeer*>(GetPeer())->OnFinishEnabled();
}

int CPropertySheet::DoModal() {
  if (page == nullptr || IsCreated() || page->IsCreated()) return kSheetCancel;
  const Size size = page->layout.size;
  const Rect whole{0, 0, size.width, kHeaderHeight + size.height + kButtonsHeight};
  const Rect body{0, kHeaderHeight, size.width, kHeaderHeight + size.height};
  isFinishEnabled = false;
  page->sheet = this;
  int result = kSheetCancel;
  if (Create(kStylePopup | kStyleVisible, whole, nullptr, 0) &&
      page->Create(kStyleChild | kStyleVisible, body, this, page->layout.id)) {
    page->OnSetActive();
    const int pressed = RunSheet(ownerWindow, *this);
    // The responder may have destroyed the windows.
    if (pressed == kSheetFinish && isFinishEnabled && page->IsCreated()) {
      page->OnWizardFinish();
      result = kSheetFinish;
    }
  }
  DestroyWindow();
  page->sheet = nullptr;
  return result;
}

std::unique_ptr<WindowPeer> CPropertySheet::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
