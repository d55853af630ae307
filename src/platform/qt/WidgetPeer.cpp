#include "platform/qt/WidgetPeer.h"

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

void NoteWidget(WindowHandle window, QWidget* widget) {
  Widgets()[window] = widget;
}

void ForgetWidget(WindowHandle window) {
  Widgets().erase(window);
}

}  // namespace tarn
