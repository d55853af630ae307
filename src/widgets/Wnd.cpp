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

// Per thread: the windows without a parent and the focus window.
struct ThreadWindows {
  std::vector<CWnd*> tops;
  CWnd* focus = nullptr;
};

ThreadWindows& OfThread() {
  return PerThread<ThreadWindows>::Get();
}

}  // namespace

CWnd::CWnd() = default;

CWnd::~CWnd() {
  DestroyWindow();
}

bool CWnd::Create(std::uint32_t newStyle, const Rect& newRect, CWnd* newParent, int newId) {
  if (handle != 0) return false;
  windowStyle = newStyle;
  windowRect = newRect;
  windowId = newId;
  isVisible = (windowStyle & kStyleVisible) != 0;
  handle = RegisterWindow(*this);
  Attach(newParent);
  peer = MakePeer(WindowToolkit::Current());
  if (!OnCreate()) {
    DestroyWindow();
    return false;
  }
  if (handle == 0) return false;
  OnSize({windowRect.Width(), windowRect.Height()});
  return true;
}

void CWnd::DestroyWindow() {
  if (handle == 0) return;
  const WindowHandle going = handle;
  NotifyFocusLost();
  ReleaseCapture();
  OnDestroy();
  if (handle != going) return;
  while (!childWindows.empty()) {
    CWnd* const child = childWindows.back();
    child->DestroyWindow();
    if (!childWindows.empty() && childWindows.back() == child) childWindows.pop_back();
  }
  UnregisterWindow(handle);
  handle = 0;
  // A destroyed child may have passed the focus to this window.
  if (OfThread().focus == this) OfThread().focus = nullptr;
  Detach();
  peer.reset();
}

void CWnd::Attach(CWnd* newParent) {
  parentWindow = newParent;
  (parentWindow != nullptr ? parentWindow->childWindows : OfThread().tops).push_back(this);
}

void CWnd::Detach() {
  std::erase(parentWindow != nullptr ? parentWindow->childWindows : OfThread().tops, this);
  parentWindow = nullptr;
}

CWnd* CWnd::FindChild(int childId) const {
  for (CWnd* const child : childWindows) {
    if (child->windowId == childId) return child;
  }
  return nullptr;
}

std::intptr_t CWnd::SendOwner(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam) {
  CWnd* const hears = GetOwner();
  return hears == nullptr ? 0 : SendWindowMessage(hears->handle, message, wParam, lParam);
}

void CWnd::MoveWindow(const Rect& newRect) {
  if (newRect == windowRect) return;
  const bool isResized =
      newRect.Width() != windowRect.Width() || newRect.Height() != windowRect.Height();
  windowRect = newRect;
  if (peer) peer->OnMoved();
  if (isResized && handle != 0) OnSize({windowRect.Width(), windowRect.Height()});
}

Point CWnd::ClientToScreen(Point point) const {
  for (const CWnd* window = this; window != nullptr; window = window->parentWindow) {
    if (window->peer) {
      if (const auto origin = window->peer->GetScreenOrigin()) {
        return {point.x + origin->x, point.y + origin->y};
      }
    }
    point.x += window->windowRect.left;
    point.y += window->windowRect.top;
  }
  return point;
}

void CWnd::ShowWindow(bool show) {
  if (show == isVisible) return;
  isVisible = show;
  if (peer) peer->OnShown();
}

void CWnd::EnableWindow(bool enable) {
  if (enable == isEnabled) return;
  isEnabled = enable;
  if (peer) peer->OnEnabled();
}

void CWnd::SetControlText(const std::string& newText) {
  if (newText == windowText) return;
  windowText = newText;
  if (peer) peer->OnTextChanged();
}

void CWnd::SetFont(const Font& newFont) {
  if (newFont == windowFont) return;
  windowFont = newFont;
  if (peer) peer->OnFontChanged();
}

void CWnd::SetFocus() {
  if (handle == 0) return;
  const WindowHandle own = handle;
  NotifyFocusTaken();
  if (IsWindow(own) && peer && HasFocus()) peer->OnFocusTaken();
}

bool CWnd::HasFocus() const {
  return OfThread().focus == this;
}

void CWnd::SetCapture() {
  if (hasCapture || handle == 0) return;
  hasCapture = true;
  if (peer) peer->OnCapture(true);
}

void CWnd::ReleaseCapture() {
  if (!hasCapture) return;
  hasCapture = false;
  if (peer) peer->OnCapture(false);
}

void CWnd::Invalidate() {
  if (peer) peer->OnInvalidated();
}

void CWnd::UpdateWindow() {
  if (peer) peer->OnPaintNow();
}

void CWnd::SetTimer(int timerId, std::chrono::milliseconds period) {
  if (handle != 0) SetWindowTimer(handle, timerId, period, [this, timerId] { OnTimer(timerId); });
}

void CWnd::KillTimer(int timerId) {
  if (handle != 0) KillWindowTimer(handle, timerId);
}

void CWnd::Retire(std::unique_ptr<CWnd> child) {
  if (child == nullptr) return;
  child->DestroyWindow();
  retired.push_back(std::move(child));
  if (handle != 0) PostWindowMessage(handle, kMsgFreeRetired, 0, 0);
}

void CWnd::FreeRetired() {
  const std::vector<std::unique_ptr<CWnd>> gone = std::exchange(retired, {});
}

void CWnd::NotifyResized(Size size) {
  if (handle == 0) return;
  windowRect.right = windowRect.left + size.width;
  windowRect.bottom = windowRect.top + size.height;
  OnSize(size);
}

void CWnd::NotifyFocusTaken() {
  CWnd*& focus = OfThread().focus;
  if (focus == this || handle == 0) return;
  const WindowHandle taker = handle;
  if (focus != nullptr) focus->NotifyFocusLost();
  // The handler may have destroyed this window or moved the focus elsewhere.
  if (!IsWindow(taker) || focus != nullptr) return;
  focus = this;
  OnSetFocus();
}

void CWnd::NotifyFocusLost() {
  CWnd*& focus = OfThread().focus;
  if (focus != this) return;
  focus = nullptr;
  OnKillFocus();
}

void CWnd::NotifyMouse(const MouseEvent& event) {
  if (handle != 0) OnMouse(event);
}

bool CWnd::NotifyKey(const KeyEvent& event) {
  return handle != 0 && OnKeyDown(event);
}

void CWnd::NotifyDroppedFiles(const std::vector<std::string>& paths) {
  for (CWnd* window = this; window != nullptr; window = window->parentWindow) {
    if (window->acceptsFiles) return window->OnDropFiles(paths);
  }
}

bool CWnd::NotifyContextMenu(Point screen) {
  for (CWnd* window = this; window != nullptr; window = window->parentWindow) {
    if (window->OnContextMenu(screen)) return true;
  }
  return false;
}

std::intptr_t CWnd::OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                    std::intptr_t lParam) {
  if (message == kMsgFreeRetired) {
    FreeRetired();
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
  const WindowHandle own = handle;
  OnIdle();
  if (!IsWindow(own)) return;
  const std::vector<CWnd*> asked = childWindows;
  for (CWnd* const child : asked) {
    if (std::find(childWindows.begin(), childWindows.end(), child) != childWindows.end()) {
      child->IdleWithChildren();
    }
  }
}

void RunIdle() {
  const std::vector<CWnd*> asked = OfThread().tops;
  for (CWnd* const window : asked) {
    const std::vector<CWnd*>& tops = OfThread().tops;
    if (std::find(tops.begin(), tops.end(), window) != tops.end()) window->IdleWithChildren();
  }
}

}  // namespace tarn
