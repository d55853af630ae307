#pragma once

#include <QPointer>
#include <QWidget>
#include <optional>

#include "widgets/Wnd.h"
#include "widgets/qt/QtFont.h"
#include "widgets/qt/QtText.h"

namespace tarn {

// All of this is used on the thread of the widgets alone.

// The widget that shows a window; null for none. For the host, which puts those of windows without
// a parent into its own.
QWidget* WidgetOf(WindowHandle window);
inline QWidget* WidgetOf(const CWnd& window) {
  return WidgetOf(window.GetHandle());
}

// Whether it is such a widget.
bool ShowsWindow(const QWidget& widget);

// Where the windows below that one are put; null for none. In a view that scrolls they stand on
// what scrolls.
QWidget* ClientAreaOf(const CWnd& window);

// Whether the window's style asks for a frame around it.
inline bool HasFrame(const CWnd& window) {
  return (window.GetStyle() & (kStyleBorder | kStyleStaticEdge)) != 0;
}

// Makes the widget findable from now on, until it is taken away.
void NoteWidget(WindowHandle window, QWidget* widget);
void ForgetWidget(WindowHandle window);

// Hands the keyboard, if it is here, to the widget around if that takes it: a field that goes would
// leave it to whatever stands next.
void LeaveFocus(const QWidget& widget);

// What all peers have in common: a widget, below the one of the parent's window, that follows the
// window's state. `Base` is the kind of peer. The widget goes with the peer, at the next chance, as
// one of its events may be running; the host may have put it elsewhere meanwhile, and if the host
// destroys it, nothing is drawn any more.
template <class Base, class Widget = QWidget>
class WidgetPeer : public Base {
 public:
  WidgetPeer(CWnd& shownWindow, Widget* newWidget)
      : window(shownWindow), handle(shownWindow.GetHandle()), widget(newWidget) {
    const CWnd* const above = window.GetParent();
    widget->setParent(above == nullptr ? nullptr : ClientAreaOf(*above));
    NoteWidget(handle, widget);
    WidgetPeer::OnMoved();
    WidgetPeer::OnShown();
    WidgetPeer::OnEnabled();
    WidgetPeer::OnTextChanged();
    WidgetPeer::OnFontChanged();
  }
  ~WidgetPeer() override {
    ForgetWidget(handle);
    if (widget == nullptr) return;
    LeaveFocus(*widget);
    widget->hide();
    widget->setParent(nullptr);
    widget->deleteLater();
  }
  WidgetPeer(const WidgetPeer&) = delete;
  WidgetPeer& operator=(const WidgetPeer&) = delete;

  // Where a window without a parent is, and whether it is seen, is the host's matter.
  void OnMoved() override {
    if (widget == nullptr || window.GetParent() == nullptr) return;
    const Rect& rect = window.GetRect();
    widget->setGeometry(rect.left, rect.top, rect.Width(), rect.Height());
  }
  void OnShown() override {
    if (widget == nullptr || window.GetParent() == nullptr) return;
    // Below a widget that the host has destroyed it would come up as a window of its own.
    if (widget->parentWidget() != nullptr) widget->setVisible(window.IsVisible());
  }
  void OnEnabled() override {
    if (widget != nullptr) widget->setEnabled(window.IsEnabled());
  }
  void OnTextChanged() override {
    if (widget != nullptr && window.GetParent() == nullptr) {
      widget->setWindowTitle(ToQt(window.GetWindowText()));
    }
  }
  void OnFontChanged() override {
    if (widget != nullptr) widget->setFont(ToQtFont(window.GetFont(), QFont()));
  }
  void OnInvalidated() override {
    if (widget != nullptr) widget->update();
  }
  // Painting on the spot would cost more than it shows; the loop paints soon enough.
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
