#include "widgets/qt/QtMenu.h"

#include <QAction>
#include <QMenu>
#include <QPointer>

#include "widgets/qt/QtText.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {

namespace {

void Fill(QMenu& shown, const CMenu& menu) {
  for (const CMenu::Entry& entry : menu.GetEntries()) {
    if (entry.kind == CMenu::Kind::Separator) {
      shown.addSeparator();
      continue;
    }
    if (entry.kind == CMenu::Kind::Submenu) {
      QMenu* const below = shown.addMenu(ToQtLabel(entry.text));
      below->setEnabled(entry.isEnabled);
      if (entry.submenu) Fill(*below, *entry.submenu);
      continue;
    }
    QAction* const action = shown.addAction(ToQtLabel(entry.text));
    action->setData(entry.id);
    action->setEnabled(entry.isEnabled);
    action->setCheckable(entry.isChecked);
    action->setChecked(entry.isChecked);
  }
}

QWidget* NearestWidget(const CWnd& window) {
  for (const CWnd* each = &window; each != nullptr; each = each->GetParent()) {
    if (QWidget* const widget = WidgetOf(*each)) return widget;
  }
  return nullptr;
}

}  // namespace

int RunMenu(const CMenu& menu, Point screen, const CWnd& owner) {
  if (menu.GetEntries().empty()) return 0;
  // Destroyed with its parent, which the menu's loop may destroy.
  const QPointer<QMenu> shown = new QMenu(NearestWidget(owner));
  Fill(*shown, menu);
  const QAction* const chosen = shown->exec(QPoint(screen.x, screen.y));
  if (shown == nullptr) return 0;
  const int id = chosen == nullptr ? 0 : chosen->data().toInt();
  delete shown;
  return id;
}

}  // namespace tarn
