#include "widgets/PropertySheet.h"

#include "widgets/Toolkit.h"

namespace tarn {

namespace {

constexpr int kHeaderHeight = 64;
constexpr int kButtonsHeight = 48;

}  // namespace

CPropertySheet::CPropertySheet(const std::string& caption, WindowHandle askedWindow)
    : ownerWindow_(askedWindow) {
  SetControlText(caption);
}

void CPropertySheet::EnableFinish(bool enable) {
  if (enable == isFinishEnabled_) return;
  isFinishEnabled_ = enable;
  if (GetPeer()) static_cast<PropertySheetPeer*>(GetPeer())->OnFinishEnabled();
}

int CPropertySheet::DoModal() {
  if (page_ == nullptr || IsCreated() || page_->IsCreated()) return kSheetCancel;
  const Size size = page_->layout_.size;
  const Rect whole{0, 0, size.width, kHeaderHeight + size.height + kButtonsHeight};
  const Rect body{0, kHeaderHeight, size.width, kHeaderHeight + size.height};
  isFinishEnabled_ = false;
  page_->sheet_ = this;
  int result = kSheetCancel;
  if (Create(kStylePopup | kStyleVisible, whole, nullptr, 0) &&
      page_->Create(kStyleChild | kStyleVisible, body, this, page_->layout_.id)) {
    page_->OnSetActive();
    const int pressed = RunSheet(ownerWindow_, *this);
    // The responder may have destroyed the windows.
    if (pressed == kSheetFinish && isFinishEnabled_ && page_->IsCreated()) {
      page_->OnWizardFinish();
      result = kSheetFinish;
    }
  }
  DestroyWindow();
  page_->sheet_ = nullptr;
  return result;
}

std::unique_ptr<WindowPeer> CPropertySheet::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
