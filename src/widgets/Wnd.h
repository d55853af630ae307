#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "widgets/Geometry.h"
#include "widgets/MessageLoop.h"
#include "widgets/WindowLinks.h"

namespace tarn {

class WindowToolkit;

// Style bits common to all windows. Derived windows define their own bits below 0x10000.
inline constexpr std::uint32_t kStylePopup = 0x80000000;
inline constexpr std::uint32_t kStyleChild = 0x40000000;
inline constexpr std::uint32_t kStyleVisible = 0x10000000;
inline constexpr std::uint32_t kStyleBorder = 0x00800000;
inline constexpr std::uint32_t kStyleStaticEdge = 0x00020000;

enum class MouseButton { None, Left, Middle, Right };
// A double click is reported as Press, Release, DoubleClick, Release.
enum class MouseAction { Press, Release, DoubleClick, Move };

struct MouseEvent {
  MouseAction action = MouseAction::Move;
  MouseButton button = MouseButton::None;
  Point point;  // in client coordinates
  bool isShiftDown = false;
  bool isControlDown = false;
};

// Key codes used by the windows; other keys are passed through unchanged.
enum VirtualKey : int {
  kKeyBackspace = 8,
  kKeyTab = 9,
  kKeyEnter = 13,
  kKeyEscape = 27,
  kKeySpace = 32,
  kKeyPageUp = 33,
  kKeyPageDown = 34,
  kKeyEnd = 35,
  kKeyHome = 36,
  kKeyLeft = 37,
  kKeyUp = 38,
  kKeyRight = 39,
  kKeyDown = 40,
  kKeyInsert = 45,
  kKeyDelete = 46,
  kKeyF2 = 113,
};

// Keys with Alt belong to menus and the desktop and are not reported.
struct KeyEvent {
  int key = 0;
  bool isShiftDown = false;
  bool isControlDown = false;
};

// Draws a window; created and destroyed together with it. A peer reads the window's state whenever
// it paints; these calls notify it of changes. Derived windows have peers with more calls. A call
// must not change the window's state and must not run event handlers.
class WindowPeer {
 public:
  virtual ~WindowPeer() = default;
  virtual void OnMoved() {}
  virtual void OnShown() {}    // visible or hidden
  virtual void OnEnabled() {}  // enabled or disabled
  virtual void OnTextChanged() {}
  virtual void OnFontChanged() {}
  virtual void OnInvalidated() {}                 // needs repainting at the next opportunity
  virtual void OnPaintNow() {}                    // repaint before returning
  virtual void OnFocusTaken() {}                  // take the keyboard focus
  virtual void OnCapture(bool /*isCaptured*/) {}  // start or stop receiving all mouse events
  // Screen position of the client area's corner; nullopt to let the control compute it from the
  // rectangles of the windows.
  virtual std::optional<Point> GetScreenOrigin() { return std::nullopt; }
};

// A window: a rectangle with an owner, children and events. All of its state is in this class; a
// toolkit displays it through its peer and reports the user's actions through the functions below
// "Called by the toolkit". A window is fully functional without a toolkit.
//
// Windows belong to the thread that creates them and may be used only there, except that messages
// may be sent from any thread. A window does not own its children: they are members of the objects
// that created them, and are destroyed (not freed) with their parent's window. A class that
// overrides OnDestroy() must call DestroyWindow() in its own destructor.
class CWnd : public WindowTarget, public WindowLinks {
 public:
  CWnd();
  // Destroys the window; overrides of OnDestroy() are not called any more at this point.
  virtual ~CWnd();

  // Creates the window, as a child of `parent` if there is one. Returns false if it already exists,
  // or if OnCreate() returns false; then it is removed again.
  bool Create(std::uint32_t style, const Rect& rect, CWnd* parent, int id);
  // Drops the window's messages and timers, invalidates its handle, and destroys its children.
  // No-op if the window does not exist. May be called from its own events.
  void DestroyWindow();
  bool IsCreated() const { return handle_ != 0; }
  // 0 unless the window exists.
  WindowHandle GetHandle() const { return handle_; }

  std::uint32_t GetStyle() const { return windowStyle_; }
  // Sends a message to the owner. Returns 0 if there is none.
  std::intptr_t SendOwner(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam);

  // Rectangle in the parent's client coordinates; the host interprets those of a window without a
  // parent.
  const Rect& GetRect() const { return windowRect_; }
  Rect GetClientRect() const { return {0, 0, windowRect_.Width(), windowRect_.Height()}; }
  // Calls OnSize() if the size changes.
  void MoveWindow(const Rect& newRect);
  // Converts client coordinates to screen coordinates.
  Point ClientToScreen(Point point) const;
  // ShowWindow, EnableWindow, SetControlText and SetFont notify the peer of a change, but fire no
  // event.
  void ShowWindow(bool show);
  // The window's own state; it may still be hidden by a parent.
  bool IsVisible() const { return isVisible_; }
  void EnableWindow(bool enable);
  bool IsEnabled() const { return isEnabled_; }
  void SetControlText(const std::string& newText);
  const std::string& GetControlText() const { return windowText_; }
  void SetFont(const Font& newFont);
  const Font& GetFont() const { return windowFont_; }
  // Takes the keyboard focus: the previous focus window of the thread gets OnKillFocus(), then this
  // one gets OnSetFocus(). Either handler may destroy this window.
  void SetFocus();
  bool HasFocus() const;
  // While captured, the window receives all mouse events, even those outside its area.
  void SetCapture();
  void ReleaseCapture();
  bool HasCapture() const { return hasCapture_; }
  // Schedules a repaint.
  void Invalidate();
  // Repaints invalid areas before it returns.
  void UpdateWindow();

  // OnTimer() is called on the window's thread; see SetWindowTimer().
  void SetTimer(int timerId, std::chrono::milliseconds period);
  void KillTimer(int timerId);

  // If set, files dropped on this window or on a child that does not accept them are passed to
  // OnDropFiles().
  void AcceptDroppedFiles(bool accept) { acceptsFiles_ = accept; }
  bool AcceptsDroppedFiles() const { return acceptsFiles_; }

  // Takes over a child that is to be destroyed while its own event handlers may still be on the
  // stack. Its window is destroyed now, the object is freed at the next message.
  void Retire(std::unique_ptr<CWnd> child);

  // --- Called by the toolkit: user actions, in client coordinates ---

  // The user or the host resized the window; its position is unchanged.
  void NotifyResized(Size size);
  // The user moved the keyboard focus here; the previous focus window is notified of its loss
  // first.
  void NotifyFocusTaken();
  // No-op if the window does not have the focus.
  void NotifyFocusLost();
  void NotifyMouse(const MouseEvent& event);
  // Returns true if the key was used and must have no other effect.
  bool NotifyKey(const KeyEvent& event);
  // Passed to the first of the window and its parents that accepts files.
  void NotifyDroppedFiles(const std::vector<std::string>& paths);
  // Asks the window and then its parents until one handles the request. Returns false if none did.
  bool NotifyContextMenu(Point screen);

  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) final;

 protected:
  // --- Events; the default implementations do nothing ---

  // The window has been created; create children here. Returning false undoes the creation.
  virtual bool OnCreate() { return true; }
  // The window and its children still exist.
  virtual void OnDestroy() {}
  // Also called once after the creation.
  virtual void OnSize(Size /*size*/) {}
  // The focus has been taken or lost; HasFocus() already returns the new state.
  virtual void OnSetFocus() {}
  virtual void OnKillFocus() {}
  virtual void OnTimer(int /*timerId*/) {}
  virtual void OnMouse(const MouseEvent& /*event*/) {}
  // Return true if the key was used.
  virtual bool OnKeyDown(const KeyEvent& /*event*/) { return false; }
  virtual void OnDropFiles(const std::vector<std::string>& /*paths*/) {}
  // Return true if handled.
  virtual bool OnContextMenu(Point /*screen*/) { return false; }
  // A command of a toolbar, a menu or the host, by number. Return true if handled; otherwise it is
  // passed to the owner.
  virtual bool OnCommand(int /*command*/) { return false; }
  // Any other message.
  virtual std::intptr_t OnMessage(std::uint32_t /*message*/, std::intptr_t /*wParam*/,
                                  std::intptr_t /*lParam*/) {
    return 0;
  }
  // The loop is idle: toolbars refresh their state.
  virtual void OnIdle() {}
  // Creates the toolkit's peer for this kind of window; null if nothing is drawn.
  virtual std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit);

  WindowPeer* GetPeer() const { return peer_.get(); }
  // Stores the text entered by the user, which the peer already shows.
  void AdoptWindowText(std::string newText) { windowText_ = std::move(newText); }

 private:
  friend void RunIdle();

  void IdleWithChildren();

  WindowHandle handle_ = 0;
  std::uint32_t windowStyle_ = 0;
  Rect windowRect_;
  std::string windowText_;
  Font windowFont_;
  bool isVisible_ = false;
  bool isEnabled_ = true;
  bool hasCapture_ = false;
  bool acceptsFiles_ = false;
  std::vector<std::unique_ptr<CWnd>> retired_;
  std::unique_ptr<WindowPeer> peer_;
};

// Calls OnIdle() of every window of this thread. To be called by the code that runs the loop, when
// it is idle.
void RunIdle();

}  // namespace tarn
