#include "hosts/desktop/RecentMenu.h"

#include <QCoreApplication>
#include <QMenu>

#include "hosts/desktop/RecentProjects.h"

namespace tarn::host {

namespace {

void Fill(QMenu& menu, const std::function<void(const QString& path)>& onChosen) {
  menu.clear();
  const QStringList paths = RecentProjects::List();
  for (qsizetype i = 0; i < paths.size(); ++i) {
    const QString& path = paths[i];
    const QString number = i < 9 ? QString("&%1  ").arg(i + 1) : QString("1&0  ");
    menu.addAction(number + QString(path).replace("&", "&&"), &menu,
                   [onChosen, path] { onChosen(path); });
  }
  menu.addSeparator();
  menu.addAction(QCoreApplication::translate("RecentMenu", "&Clear"), &menu,
                 [] { RecentProjects::Clear(); })
      ->setEnabled(!paths.isEmpty());
}

}  // namespace

QMenu* MakeRecentMenu(QWidget& parent, const std::function<void(const QString& path)>& onChosen) {
  auto* const menu = new QMenu(QCoreApplication::translate("RecentMenu", "Open &recent"), &parent);
  QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, onChosen] { Fill(*menu, onChosen); });
  return menu;
}

}  // namespace tarn::host
