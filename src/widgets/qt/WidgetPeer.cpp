#include "widgets/qt/WidgetPeer.h"

#include <QAbstractScrollArea>
#include <algorithm>
#include <unordered_map>

namespace tarn {

namespace {

std::unordered_map<WindowHandle, QPointer<QWidget>>& Widgets() {
  static std::unordered_map<WindowHandle, QPointer<QWidget>> widgets;
  return widgets;
}

}  // namespace

QWidget* WidgetOf(WindowHandle window) {
  const auto found = Widgets().find(window);
  return found == Widgets().end() ? nullptr : found->second.data();
}

bool ShowsWindow(const QWidget& widget) {
  return std::any_of(Widgets().begin(), Widgets().end(),
                     [&widget](const auto& each) { return each.second == &widget; });
}

QWidget* ClientAreaOf(const CWnd& window) {
  QWidget* const widget = WidgetOf(window);
  auto* const area = qobject_cast<QAbstractScrollArea*>(widget);
  return area == nullptr ? widget : area->viewport();
}

void RegisterWidget(WindowHandle window, QWidget* widget) {
  Widgets()[window] = widget;
}

void UnregisterWidget(WindowHandle window) {
  Widgets().erase(window);
}

void LeaveFocus(const QWidget& widget) {
  QWidget* above = widget.parentWidget();
  // The focus of scrolled content belongs to the view around it.
  if (above != nullptr && above->focusProxy() != nullptr) above = above->focusProxy();
  const QWidget* const focused = widget.window()->focusWidget();
  if (above == nullptr || focused == nullptr) return;
  const bool isHere = focused == &widget || widget.isAncestorOf(focused);
  if (isHere && (above->focusPolicy() & Qt::TabFocus) != 0) above->setFocus(Qt::OtherFocusReason);
}

}  // namespace tarn
