#include "hosts/desktop/WindowLayout.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QToolBar>

#include "hosts/desktop/DesktopSettings.h"

namespace tarn::host {

namespace {

// To be incremented when stored states no longer match the window.
constexpr int kVersion = 1;
constexpr const char* kGeometryKey = "window/geometry";
constexpr const char* kStateKey = "window/state";

}  // namespace

void WindowLayout::Restore() {
  firstState_ = window_.saveState(kVersion);
  const DesktopSettings settings;
  // Both are no-ops for invalid data.
  window_.restoreGeometry(settings.value(kGeometryKey).toByteArray());
  window_.restoreState(settings.value(kStateKey).toByteArray(), kVersion);
}

void WindowLayout::Save() const {
  DesktopSettings settings;
  settings.setValue(kGeometryKey, window_.saveGeometry());
  const bool isAlone = !shownState_.isEmpty();
  settings.setValue(kStateKey, isAlone ? shownState_ : window_.saveState(kVersion));
}

void WindowLayout::HidePanes() {
  if (!shownState_.isEmpty()) return;
  shownState_ = window_.saveState(kVersion);
  for (QDockWidget* const dock : window_.findChildren<QDockWidget*>()) dock->hide();
  for (QToolBar* const bar :
       window_.findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly)) {
    bar->hide();
  }
}

void WindowLayout::ShowPanes() {
  if (shownState_.isEmpty()) return;
  window_.restoreState(shownState_, kVersion);
  shownState_.clear();
}

void WindowLayout::Reset() {
  if (shownState_.isEmpty()) {
    window_.restoreState(firstState_, kVersion);
  } else {
    shownState_ = firstState_;
  }
  if (onReset) onReset();
}

QMenu* WindowLayout::MakeMenu(const QList<QList<QAction*>>& groups) {
  auto* const menu = new QMenu(QCoreApplication::translate("WindowLayout", "&View"), &window_);
  QObject::connect(menu, &QMenu::aboutToShow, menu, [this, menu, groups] { Fill(*menu, groups); });
  return menu;
}

void WindowLayout::Fill(QMenu& menu, const QList<QList<QAction*>>& groups) {
  menu.clear();
  for (const QDockWidget* const dock : window_.findChildren<QDockWidget*>()) {
    menu.addAction(dock->toggleViewAction());
  }
  menu.addSeparator();
  for (const QToolBar* const bar :
       window_.findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly)) {
    QAction* const action = bar->toggleViewAction();
    action->setText(
        QCoreApplication::translate("WindowLayout", "Tool bar: %1").arg(bar->windowTitle()));
    menu.addAction(action);
  }
  menu.addSeparator();
  for (const QList<QAction*>& group : groups) {
    menu.addActions(group);
    menu.addSeparator();
  }
  menu.addAction(QCoreApplication::translate("WindowLayout", "&Reset layout"), &menu,
                 [this] { Reset(); });
}

}  // namespace tarn::host
