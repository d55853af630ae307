#pragma once

#include <QObject>

#include "widgets/Wnd.h"

class QKeyEvent;
class QWidget;

namespace tarn {

// What of the user's actions on a widget goes to its window.
enum WindowInputs : unsigned {
  kInputSize = 1,
  kInputFocus = 2,
  kInputMouse = 4,  // the widget's own handling of the mouse is left out
  kInputKeys = 8,   // but for those with Alt; one that the window uses goes no further
  kInputContextMenu = 16,
  kInputFileDrops = 32,
  kInputAll = 63,
  kInputMouseHeard = 64,  // instead of kInputMouse: the widget handles the mouse as well
};

// Tells a window what the user does with the widgets that show it. Child of a widget, with which it
// goes; a window that went before hears nothing.
class WindowInput : public QObject {
 public:
  // For an area that scrolls, `widget` is the viewport, whose corner is the client area's.
  WindowInput(CWnd& shownWindow, QWidget& widget, unsigned forwarded = kInputAll);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Handle(QWidget& widget, QEvent& event);
  bool OnMouse(QWidget& widget, QEvent& event);
  bool OnContextMenu(QEvent& event);
  bool OnDrop(QEvent& event);

  CWnd& window;
  WindowHandle handle;
  unsigned inputs;
};

// The key as the windows know it.
KeyEvent ToKeyEvent(const QKeyEvent& event);

}  // namespace tarn
