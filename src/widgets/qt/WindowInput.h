#pragma once

#include <QObject>

#include "widgets/Wnd.h"

class QKeyEvent;
class QWidget;

namespace tarn {

// Kinds of user input on a widget that are forwarded to its window.
enum WindowInputs : unsigned {
  kInputSize = 1,
  kInputFocus = 2,
  kInputMouse = 4,  // the widget's own mouse handling is disabled
  kInputKeys = 8,   // except with Alt; a key used by the window goes no further
  kInputContextMenu = 16,
  kInputFileDrops = 32,
  kInputAll = 63,
  kInputMouseHeard = 64,  // instead of kInputMouse: the widget handles the mouse as well
};

// Event filter that forwards user input on widgets to the window that they show. Child of a widget,
// with which it is destroyed; does nothing after the window has been destroyed.
class WindowInput : public QObject {
 public:
  // `widget` is the viewport of a scrolling area, whose corner is that of the client area.
  WindowInput(CWnd& shownWindow, QWidget& widget, unsigned forwarded = kInputAll);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Handle(QWidget& widget, QEvent& event);
  bool OnMouse(QWidget& widget, QEvent& event);
  bool OnContextMenu(QEvent& event);
  bool OnDrop(QEvent& event);

  CWnd& window_;
  WindowHandle handle_;
  unsigned inputs_;
};

// Converts a key event to the windows' representation.
KeyEvent ToKeyEvent(const QKeyEvent& event);

}  // namespace tarn
