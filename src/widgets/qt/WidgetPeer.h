#pragma once

#include <QPointer>
#include <QWidget>
#include <optional>

#include "widgets/Wnd.h"
#include "widgets/qt/QtFont.h"
#include "widgets/qt/QtText.h"

namespace tarn {

// Everything in this file is for the widget thread only.

// Returns the widget that shows a window; null if there is none. The host uses it to embed windows
// without a parent into its own widgets.
QWidget* WidgetOf(WindowHandle window);
inline QWidget* WidgetOf(const CWnd& window) {
  return WidgetOf(window.GetHandle());
}

// Returns whether the widget shows a window.
bool ShowsWindow(const QWidget& widget);

// Returns the widget that contains the child windows of a window; null if there is none. For a
// scrolling view it is the scrolled area.
QWidget* ClientAreaOf(const CWnd& window);

// Returns whether the window's style requests a frame around it.
inline bool HasFrame(const CWnd& window) {
  return (window.GetStyle() & (kStyleBorder | kStyleStaticEdge)) != 0;
}

// Registers the widget of a window, until UnregisterWidget().
void RegisterWidget(WindowHandle window, QWidget* widget);
void UnregisterWidget(WindowHandle window);

// Moves the keyboard focus, if it is here, to the surrounding widget if that accepts it: the focus
// of a destroyed field would otherwise move to an arbitrary neighbour.
void LeaveFocus(const QWidget& widget);

// Common base of all peers: a widget, child of the parent window's widget, that follows the
// window's state. `Base` is the peer interface. The widget is destroyed after the peer, when
// control returns to the event loop, since one of its events may be running. The host may have
// moved the widget elsewhere; if the host destroys it, nothing is drawn any more.
template <class Base, class Widget = QWidget>
class WidgetPeer : public Base {
 public:
  // Takes over the new widget and applies the window's current state to it.
  WidgetPeer(CWnd& shownWindow, Widget* newWidget)
      : window(shownWindow), handle(shownWindow.GetHandle()), widget(newWidget) {
    const CWnd* const above = window.GetParent();
    widget->setParent(above == nullptr ? nullptr : ClientAreaOf(*above));
    RegisterWidget(handle, widget);
    WidgetPeer::OnMoved();
    WidgetPeer::OnShown();
    WidgetPeer::OnEnabled();
    WidgetPeer::OnTextChanged();
    WidgetPeer::OnFontChanged();
  }
  ~WidgetPeer() override {
    UnregisterWidget(handle);
    if (widget == nullptr) return;
    LeaveFocus(*widget);
    widget->hide();
    widget->setParent(nullptr);
    widget->deleteLater();
  }
  WidgetPeer(const WidgetPeer&) = delete;
  WidgetPeer& operator=(const WidgetPeer&) = delete;

  // The host decides on position and visibility of a window without a parent.
  void OnMoved() override {
    if (widget == nullptr || window.GetParent() == nullptr) return;
    const Rect& rect = window.GetRect();
    widget->setGeometry(rect.left, rect.top, rect.Width(), rect.Height());
  }
  void OnShown() override {
    if (widget == nullptr || window.GetParent() == nullptr) return;
    // With its parent destroyed by the host, it would appear as a top-level window.
    if (widget->parentWidget() != nullptr) widget->setVisible(window.IsVisible());
  }
  void OnEnabled() override {
    if (widget != nullptr) widget->setEnabled(window.IsEnabled());
  }
  void OnTextChanged() override {
    if (widget != nullptr && window.GetParent() == nullptr) {
      widget->setWindowTitle(ToQt(window.GetControlText()));
    }
  }
  void OnFontChanged() override {
    if (widget != nullptr) widget->setFont(ToQtFont(window.GetFont(), QFont()));
  }
  void OnInvalidated() override {
    if (widget != nullptr) widget->update();
  }
  // Immediate painting would be too expensive; the loop paints soon enough.
  void OnPaintNow() override { WidgetPeer::OnInvalidated(); }
  void OnFocusTaken() override {
    if (widget != nullptr) widget->setFocus(Qt::OtherFocusReason);
  }
  std::optional<Point> GetScreenOrigin() override {
    const QWidget* const area = ClientAreaOf(window);
    if (area == nullptr) return std::nullopt;
    const QPoint origin = area->mapToGlobal(QPoint(0, 0));
    return Point{origin.x(), origin.y()};
  }

 protected:
  CWnd& window;
  const WindowHandle handle;
  QPointer<Widget> widget;
};

}  // namespace tarn
