#include "widgets/qt/WindowInput.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QResizeEvent>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "widgets/qt/QtText.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {

namespace {

MouseButton ToButton(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return MouseButton::Left;
    case Qt::MiddleButton:
      return MouseButton::Middle;
    case Qt::RightButton:
      return MouseButton::Right;
    default:
      return MouseButton::None;
  }
}

std::optional<MouseAction> ToAction(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
      return MouseAction::Press;
    case QEvent::MouseButtonRelease:
      return MouseAction::Release;
    case QEvent::MouseButtonDblClick:
      return MouseAction::DoubleClick;
    case QEvent::MouseMove:
      return MouseAction::Move;
    default:
      return std::nullopt;
  }
}

std::vector<std::string> PathsOf(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.push_back(FromQt(url.toLocalFile()));
  }
  return paths;
}

bool AcceptsFiles(const CWnd& window) {
  for (const CWnd* each = &window; each != nullptr; each = each->GetParent()) {
    if (each->AcceptsDroppedFiles()) return true;
  }
  return false;
}

// Returns whether a key comes from a plain child widget: unused keys propagate to the parent
// widgets, but those from a child that shows a window of its own are not meant for this window.
bool ComesFromBelow(const QWidget& widget) {
  const QWidget* each = QApplication::focusWidget();
  if (each == nullptr || !widget.isAncestorOf(each)) return false;
  while (each != &widget && !ShowsWindow(*each)) each = each->parentWidget();
  return each != &widget;
}

// With these modifiers a key belongs to the desktop or to a menu: Alt+Delete must not delete.
bool IsWithSystemKey(const QKeyEvent& event) {
  return (event.modifiers() & (Qt::AltModifier | Qt::MetaModifier)) != Qt::NoModifier;
}

struct KeyPair {
  int qt;
  int window;
};

constexpr KeyPair kKeys[] = {
    {Qt::Key_Backspace, kKeyBackspace},
    {Qt::Key_Tab, kKeyTab},
    {Qt::Key_Backtab, kKeyTab},  // with Shift
    {Qt::Key_Return, kKeyEnter},
    {Qt::Key_Enter, kKeyEnter},
    {Qt::Key_Escape, kKeyEscape},
    {Qt::Key_Space, kKeySpace},
    {Qt::Key_PageUp, kKeyPageUp},
    {Qt::Key_PageDown, kKeyPageDown},
    {Qt::Key_End, kKeyEnd},
    {Qt::Key_Home, kKeyHome},
    {Qt::Key_Left, kKeyLeft},
    {Qt::Key_Up, kKeyUp},
    {Qt::Key_Right, kKeyRight},
    {Qt::Key_Down, kKeyDown},
    {Qt::Key_Insert, kKeyInsert},
    {Qt::Key_Delete, kKeyDelete},
    {Qt::Key_F2, kKeyF2},
};

}  // namespace

KeyEvent ToKeyEvent(const QKeyEvent& event) {
  KeyEvent key;
  key.isShiftDown = event.modifiers().testFlag(Qt::ShiftModifier);
  key.isControlDown = event.modifiers().testFlag(Qt::ControlModifier);
  for (const KeyPair& pair : kKeys) {
    if (pair.qt == event.key()) key.key = pair.window;
  }
  // Letters and digits have the same codes in both. Other characters would be confused with
  // different keys: a full stop would delete.
  const bool isLetter = event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z;
  const bool isDigit = event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9;
  if (isLetter || isDigit) key.key = event.key();
  return key;
}

WindowInput::WindowInput(CWnd& shownWindow, QWidget& widget, unsigned forwarded)
    : QObject(&widget), window_(shownWindow), handle_(shownWindow.GetHandle()), inputs_(forwarded) {
  if ((inputs_ & kInputFileDrops) != 0) widget.setAcceptDrops(true);
  if ((inputs_ & (kInputMouse | kInputMouseHeard)) != 0) widget.setMouseTracking(true);
  widget.installEventFilter(this);
}

bool WindowInput::eventFilter(QObject* watched, QEvent* event) {
  if (!IsWindow(handle_)) return false;
  auto* const widget = qobject_cast<QWidget*>(watched);
  return widget != nullptr && Handle(*widget, *event);
}

bool WindowInput::Handle(QWidget& widget, QEvent& event) {
  switch (event.type()) {
    case QEvent::Resize:
      if ((inputs_ & kInputSize) != 0) {
        const QSize size = static_cast<QResizeEvent&>(event).size();
        // A size that the window has set itself need not be reported.
        const Rect known = window_.GetClientRect();
        if (size.width() != known.Width() || size.height() != known.Height()) {
          window_.NotifyResized({size.width(), size.height()});
        }
      }
      return false;
    case QEvent::FocusIn:
      if ((inputs_ & kInputFocus) != 0) window_.NotifyFocusTaken();
      return false;
    case QEvent::FocusOut:
      // A menu or another program takes the focus only temporarily; the window gets it back.
      if ((inputs_ & kInputFocus) != 0) {
        const Qt::FocusReason reason = static_cast<QFocusEvent&>(event).reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) {
          window_.NotifyFocusLost();
        }
      }
      return false;
    case QEvent::KeyPress: {
      const auto& key = static_cast<QKeyEvent&>(event);
      return (inputs_ & kInputKeys) != 0 && !IsWithSystemKey(key) && !ComesFromBelow(widget) &&
             window_.NotifyKey(ToKeyEvent(key));
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
      return OnMouse(widget, event);
    case QEvent::ContextMenu:
      return OnContextMenu(event);
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
      return OnDrop(event);
    default:
      return false;
  }
}

bool WindowInput::OnMouse(QWidget& widget, QEvent& event) {
  if ((inputs_ & (kInputMouse | kInputMouseHeard)) == 0) return false;
  const bool isHeardAlone = (inputs_ & kInputMouseHeard) != 0;
  // Destroying the window destroys its widget, and this object with it if a nested loop runs.
  const WindowHandle own = handle_;
  const auto& mouse = static_cast<QMouseEvent&>(event);
  if (!isHeardAlone && event.type() == QEvent::MouseButtonPress &&
      widget.focusPolicy() != Qt::NoFocus) {
    widget.setFocus(Qt::MouseFocusReason);
  }
  MouseEvent reported;
  reported.action = ToAction(event.type()).value_or(MouseAction::Move);
  reported.button = ToButton(mouse.button());
  reported.point = {static_cast<int>(mouse.position().x()), static_cast<int>(mouse.position().y())};
  reported.isShiftDown = mouse.modifiers().testFlag(Qt::ShiftModifier);
  reported.isControlDown = mouse.modifiers().testFlag(Qt::ControlModifier);
  if (IsWindow(own)) window_.NotifyMouse(reported);
  return !isHeardAlone || !IsWindow(own);
}

bool WindowInput::OnContextMenu(QEvent& event) {
  if ((inputs_ & kInputContextMenu) == 0) return false;
  const QPoint screen = static_cast<QContextMenuEvent&>(event).globalPos();
  window_.NotifyContextMenu({screen.x(), screen.y()});
  return true;
}

bool WindowInput::OnDrop(QEvent& event) {
  if ((inputs_ & kInputFileDrops) == 0 || !AcceptsFiles(window_)) return false;
  // All three kinds of events are drop events.
  auto& drop = static_cast<QDropEvent&>(event);
  const std::vector<std::string> paths = PathsOf(*drop.mimeData());
  if (paths.empty()) return false;
  drop.setDropAction(Qt::CopyAction);
  drop.accept();
  if (event.type() != QEvent::Drop) return true;
  // The source program waits for the end of this event, while the handler may show a dialog.
  QTimer::singleShot(0, this, [this, paths] {
    if (IsWindow(handle_)) window_.NotifyDroppedFiles(paths);
  });
  return true;
}

}  // namespace tarn
