#include "widgets/Wnd.h"

#include <algorithm>
#include <utility>

#include "platform/threads/PerThread.h"
#include "widgets/HostMessages.h"
#include "widgets/Toolkit.h"

namespace tarn {

namespace {

// Greater than all message numbers in use.
constexpr std::uint32_t kMsgFreeRetired = 0x7FFFFF01;

// Per thread: the window with the keyboard focus.
struct ThreadFocus {
  CWnd* window = nullptr;
};

CWnd*& FocusWindow() {
  return PerThread<ThreadFocus>::Get().window;
}

}  // namespace

CWnd::CWnd() = default;

CWnd::~CWnd() {
  DestroyWindow();
}

bool CWnd::Create(std::uint32_t newStyle, const Rect& newRect, CWnd* newParent, int newId) {
  if (handle_ != 0) return false;
  windowStyle_ = newStyle;
  windowRect_ = newRect;
  isVisible_ = (windowStyle_ & kStyleVisible) != 0;
  handle_ = RegisterWindow(*this);
  Attach(*this, newParent, newId);
  peer_ = MakePeer(WindowToolkit::Current());
  if (!OnCreate()) {
    DestroyWindow();
    return false;
  }
  if (handle_ == 0) return false;
  OnSize({windowRect_.Width(), windowRect_.Height()});
  return true;
}

void CWnd::DestroyWindow() {
  if (handle_ == 0) return;
  const WindowHandle going = handle_;
  NotifyFocusLost();
  ReleaseCapture();
  OnDestroy();
  if (handle_ != going) return;
  while (!GetChildren().empty()) {
    CWnd* const child = GetChildren().back();
    child->DestroyWindow();
    DropLastChild(child);
  }
  UnregisterWindow(handle_);
  handle_ = 0;
  // A destroyed child may have passed the focus to this window.
  if (FocusWindow() == this) FocusWindow() = nullptr;
  Detach(*this);
  peer_.reset();
}

std::intptr_t CWnd::SendOwner(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam) {
  CWnd* const owner = GetOwner();
  return owner == nullptr ? 0 : SendWindowMessage(owner->handle_, message, wParam, lParam);
}

void CWnd::MoveWindow(const Rect& newRect) {
  if (newRect == windowRect_) return;
  const bool isResized =
      newRect.Width() != windowRect_.Width() || newRect.Height() != windowRect_.Height();
  windowRect_ = newRect;
  if (peer_) peer_->OnMoved();
  if (isResized && handle_ != 0) OnSize({windowRect_.Width(), windowRect_.Height()});
}

Point CWnd::ClientToScreen(Point point) const {
  for (const CWnd* window = this; window != nullptr; window = window->GetParent()) {
    if (window->peer_) {
      if (const auto origin = window->peer_->GetScreenOrigin()) {
        return {point.x + origin->x, point.y + origin->y};
      }
    }
    point.x += window->windowRect_.left;
    point.y += window->windowRect_.top;
  }
  return point;
}

void CWnd::ShowWindow(bool show) {
  if (show == isVisible_) return;
  isVisible_ = show;
  if (peer_) peer_->OnShown();
}

void CWnd::EnableWindow(bool enable) {
  if (enable == isEnabled_) return;
  isEnabled_ = enable;
  if (peer_) peer_->OnEnabled();
}

void CWnd::SetControlText(const std::string& newText) {
  if (newText == windowText_) return;
  windowText_ = newText;
  if (peer_) peer_->OnTextChanged();
}

void CWnd::SetFont(const Font& newFont) {
  if (newFont == windowFont_) return;
  windowFont_ = newFont;
  if (peer_) peer_->OnFontChanged();
}

void CWnd::SetFocus() {
  if (handle_ == 0) return;
  const WindowHandle own = handle_;
  NotifyFocusTaken();
  if (IsWindow(own) && peer_ && HasFocus()) peer_->OnFocusTaken();
}

bool CWnd::HasFocus() const {
  return FocusWindow() == this;
}

void CWnd::SetCapture() {
  if (hasCapture_ || handle_ == 0) return;
  hasCapture_ = true;
  if (peer_) peer_->OnCapture(true);
}

void CWnd::ReleaseCapture() {
  if (!hasCapture_) return;
  hasCapture_ = false;
  if (peer_) peer_->OnCapture(false);
}

void CWnd::Invalidate() {
  if (peer_) peer_->OnInvalidated();
}

void CWnd::UpdateWindow() {
  if (peer_) peer_->OnPaintNow();
}

void CWnd::SetTimer(int timerId, std::chrono::milliseconds period) {
  if (handle_ != 0) SetWindowTimer(handle_, timerId, period, [this, timerId] { OnTimer(timerId); });
}

void CWnd::KillTimer(int timerId) {
  if (handle_ != 0) KillWindowTimer(handle_, timerId);
}

void CWnd::Retire(std::unique_ptr<CWnd> child) {
  if (child == nullptr) return;
  child->DestroyWindow();
  retired_.push_back(std::move(child));
  if (handle_ != 0) PostWindowMessage(handle_, kMsgFreeRetired, 0, 0);
}

void CWnd::NotifyResized(Size size) {
  if (handle_ == 0) return;
  windowRect_.right = windowRect_.left + size.width;
  windowRect_.bottom = windowRect_.top + size.height;
  OnSize(size);
}

void CWnd::NotifyFocusTaken() {
  CWnd*& focus = FocusWindow();
  if (focus == this || handle_ == 0) return;
  const WindowHandle taker = handle_;
  if (focus != nullptr) focus->NotifyFocusLost();
  // The handler may have destroyed this window or moved the focus elsewhere.
  if (!IsWindow(taker) || focus != nullptr) return;
  focus = this;
  OnSetFocus();
}

void CWnd::NotifyFocusLost() {
  CWnd*& focus = FocusWindow();
  if (focus != this) return;
  focus = nullptr;
  OnKillFocus();
}

void CWnd::NotifyMouse(const MouseEvent& event) {
  if (handle_ != 0) OnMouse(event);
}

bool CWnd::NotifyKey(const KeyEvent& event) {
  return handle_ != 0 && OnKeyDown(event);
}

void CWnd::NotifyDroppedFiles(const std::vector<std::string>& paths) {
  for (CWnd* window = this; window != nullptr; window = window->GetParent()) {
    if (window->acceptsFiles_) return window->OnDropFiles(paths);
  }
}

bool CWnd::NotifyContextMenu(Point screen) {
  for (CWnd* window = this; window != nullptr; window = window->GetParent()) {
    if (window->OnContextMenu(screen)) return true;
  }
  return false;
}

std::intptr_t CWnd::OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                    std::intptr_t lParam) {
  if (message == kMsgFreeRetired) {
    const std::vector<std::unique_ptr<CWnd>> freed = std::exchange(retired_, {});
    return 0;
  }
  if (message != kMsgCommand) return OnMessage(message, wParam, lParam);
  if (OnCommand(static_cast<int>(wParam))) return 1;
  return SendOwner(message, wParam, lParam);
}

std::unique_ptr<WindowPeer> CWnd::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

void CWnd::IdleWithChildren() {
  const WindowHandle own = handle_;
  OnIdle();
  if (!IsWindow(own)) return;
  const std::vector<CWnd*> asked = GetChildren();
  for (CWnd* const child : asked) {
    const std::vector<CWnd*>& children = GetChildren();
    if (std::find(children.begin(), children.end(), child) != children.end()) {
      child->IdleWithChildren();
    }
  }
}

void RunIdle() {
  const std::vector<CWnd*> asked = WindowLinks::GetTopWindows();
  for (CWnd* const window : asked) {
    const std::vector<CWnd*>& tops = WindowLinks::GetTopWindows();
    if (std::find(tops.begin(), tops.end(), window) != tops.end()) window->IdleWithChildren();
  }
}

}  // namespace tarn
