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

namespace tarn {

class WindowToolkit;

// Bits of a window's style. Kinds of windows add bits of their own below 0x10000.
inline constexpr std::uint32_t kStylePopup = 0x80000000;
inline constexpr std::uint32_t kStyleChild = 0x40000000;
inline constexpr std::uint32_t kStyleVisible = 0x10000000;
inline constexpr std::uint32_t kStyleBorder = 0x00800000;
inline constexpr std::uint32_t kStyleStaticEdge = 0x00020000;

enum class MouseButton { None, Left, Middle, Right };
enum class MouseAction { Press, Release, DoubleClick, Move };

struct MouseEvent {
  MouseAction action = MouseAction::Move;
  MouseButton button = MouseButton::None;
  Point point;  // in client coordinates
  bool isShiftDown = false;
  bool isControlDown = false;
};

// Key numbers that something here means; others pass through as they come.
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

// With Alt a key is a menu's or the desktop's, and is not told.
struct KeyEvent {
  int key = 0;
  bool isShiftDown = false;
  bool isControlDown = false;
};

// What a toolkit draws a window with, made when the window is created and freed with it. It reads
// the window's state whenever it paints; these calls tell it what has changed. Kinds of windows
// have peers with more calls. A call must not change the window's state, and must not run events.
class WindowPeer {
 public:
  virtual ~WindowPeer() = default;
  virtual void OnMoved() {}
  virtual void OnShown() {}    // visible or hidden
  virtual void OnEnabled() {}  // enabled or disabled
  virtual void OnTextChanged() {}
  virtual void OnFontChanged() {}
  virtual void OnInvalidated() {}                 // has to be painted anew, at the next chance
  virtual void OnPaintNow() {}                    // ... before this call returns
  virtual void OnFocusTaken() {}                  // the system wants the keyboard here
  virtual void OnCapture(bool /*isCaptured*/) {}  // all mouse events come here, or no longer
  // Where the corner of the client area stands on the screen; nothing for a peer that leaves this
  // to the rectangles of the windows.
  virtual std::optional<Point> GetScreenOrigin() { return std::nullopt; }
};

// A window: a place on the screen with an owner, children and events, whose whole state is here. A
// toolkit shows it through its peer and feeds the user's actions into the functions below "From the
// toolkit"; without one it lives all the same.
//
// Windows belong to the thread that creates them and are used there alone, but for messages, which
// may be sent from anywhere. A window does not own its children: they are members of whoever made
// them, and are destroyed (not freed) with their parent's window. A class that replaces OnDestroy
// calls DestroyWindow in its own destructor.
class CWnd : public WindowTarget {
 public:
  CWnd();
  virtual ~CWnd();
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;

  // Makes the window, below `parent` if there is one. False when it stands already, or when
  // OnCreate says so: then nothing of it stays.
  bool Create(std::uint32_t style, const Rect& rect, CWnd* parent, int id);
  // Its messages and timers go, its handle answers 0, and its children go with it. Nothing when it
  // does not stand. May be called from its own events.
  void DestroyWindow();
  bool IsCreated() const { return handle != 0; }
  // 0 unless it stands.
  WindowHandle GetHandle() const { return handle; }

  CWnd* GetParent() const { return parentWindow; }
  int GetId() const { return windowId; }
  std::uint32_t GetStyle() const { return windowStyle; }
  const std::vector<CWnd*>& GetChildren() const { return childWindows; }
  // Null for none.
  CWnd* FindChild(int childId) const;
  // Who hears of it: the owner that was set, else the parent. Null for neither. The owner is
  // borrowed and outlives the window.
  CWnd* GetOwner() const { return ownerWindow != nullptr ? ownerWindow : parentWindow; }
  void SetOwner(CWnd* newOwner) { ownerWindow = newOwner; }
  // Sends to the owner; 0 without one.
  std::intptr_t SendOwner(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam);

  // In the parent's client coordinates; those of a window without a parent are the host's matter.
  const Rect& GetRect() const { return windowRect; }
  Rect GetClientRect() const { return {0, 0, windowRect.Width(), windowRect.Height()}; }
  void MoveWindow(const Rect& newRect);
  Point ClientToScreen(Point point) const;
  void ShowWindow(bool show);
  // Its own wish; a parent may hide it all the same.
  bool IsVisible() const { return isVisible; }
  void EnableWindow(bool enable);
  bool IsEnabled() const { return isEnabled; }
  void SetWindowText(const std::string& newText);
  const std::string& GetWindowText() const { return windowText; }
  void SetFont(const Font& newFont);
  const Font& GetFont() const { return windowFont; }
  void SetFocus();
  bool HasFocus() const;
  void SetCapture();
  void ReleaseCapture();
  bool HasCapture() const { return hasCapture; }
  void Invalidate();
  // Paints what is due before it returns.
  void UpdateWindow();

  // OnTimer is called on the window's thread, see SetWindowTimer.
  void SetTimer(int timerId, std::chrono::milliseconds period);
  void KillTimer(int timerId);

  void AcceptDroppedFiles(bool accept) { acceptsFiles = accept; }
  bool AcceptsDroppedFiles() const { return acceptsFiles; }

  // Takes over a child that is to go while its own events may still be on the stack. Its window
  // goes now, the object at the next message.
  void Retire(std::unique_ptr<CWnd> child);

  // --- From the toolkit: what the user does, in client coordinates ---

  void NotifyResized(Size size);
  // The user moved the keyboard here; whoever had it loses it first.
  void NotifyFocusTaken();
  void NotifyFocusLost();
  void NotifyMouse(const MouseEvent& event);
  // True when the key was used and must do nothing else.
  bool NotifyKey(const KeyEvent& event);
  void NotifyDroppedFiles(const std::vector<std::string>& paths);
  // Goes up the parents until one handles it. False when none did.
  bool NotifyContextMenu(Point screen);

  std::intptr_t OnWindowMessage(std::uint32_t message, std::intptr_t wParam,
                                std::intptr_t lParam) final;

 protected:
  // --- Events; what they do here is nothing ---

  // The window stands; children are created here. False undoes it.
  virtual bool OnCreate() { return true; }
  // The window still stands, with its children.
  virtual void OnDestroy() {}
  virtual void OnSize(Size /*size*/) {}
  virtual void OnSetFocus() {}
  virtual void OnKillFocus() {}
  virtual void OnTimer(int /*timerId*/) {}
  virtual void OnMouse(const MouseEvent& /*event*/) {}
  virtual bool OnKeyDown(const KeyEvent& /*event*/) { return false; }
  virtual void OnDropFiles(const std::vector<std::string>& /*paths*/) {}
  // True when it has been handled.
  virtual bool OnContextMenu(Point /*screen*/) { return false; }
  // A command of a tool bar, a menu or the host, by number. True when it has been handled; else
  // the owner is asked.
  virtual bool OnCommand(int /*command*/) { return false; }
  // Every other message.
  virtual std::intptr_t OnMessage(std::uint32_t /*message*/, std::intptr_t /*wParam*/,
                                  std::intptr_t /*lParam*/) {
    return 0;
  }
  // Nothing else is to do: tool bars refresh their states.
  virtual void OnIdle() {}
  // The peer that the toolkit draws this kind of window with; null where nothing is drawn.
  virtual std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit);

  WindowPeer* GetPeer() const { return peer.get(); }
  // The text as the user has made it, which the peer knows already.
  void AdoptWindowText(std::string newText) { windowText = std::move(newText); }

 private:
  friend void RunIdle();

  void Attach(CWnd* newParent);
  void Detach();
  void IdleWithChildren();
  void FreeRetired();

  WindowHandle handle = 0;
  CWnd* parentWindow = nullptr;
  CWnd* ownerWindow = nullptr;
  int windowId = 0;
  std::uint32_t windowStyle = 0;
  Rect windowRect;
  std::string windowText;
  Font windowFont;
  bool isVisible = false;
  bool isEnabled = true;
  bool hasCapture = false;
  bool acceptsFiles = false;
  std::vector<CWnd*> childWindows;
  std::vector<std::unique_ptr<CWnd>> retired;
  std::unique_ptr<WindowPeer> peer;
};

// Calls OnIdle of every window of this thread; for whoever runs the loop, when it has nothing else
// to do.
void RunIdle();

}  // namespace tarn
