#include "hosts/desktop/ServerMenus.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QToolBar>
#include <cstdlib>

#include "hosts/frame/LogEntry.h"
#include "hosts/frame/ServerDrivers.h"
#include "platform/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr std::uint32_t kFirstServerCommand = 32772;
constexpr std::uint32_t kFirstCommonCommand = 57601;

struct Shortcut {
  std::uint32_t command;
  const char* keys;
};

// By which the commands are known in most environments.
constexpr Shortcut kShortcuts[] = {
    {kCmdBuildAll, "F7"},           {kCmdRebuildAll, "Ctrl+Alt+F7"},
    {kCmdTranslateNode, "Ctrl+F7"}, {kCmdBuildApplication, "Shift+F7"},
    {kCmdStop, "Ctrl+Break"},
};

std::uint32_t CommandOf(const CXmlNode& entry) {
  const auto number = static_cast<std::uint32_t>(std::atoi(AttributeOf(&entry, "id").c_str()));
  return number < kFirstCommonCommand ? number + kFirstServerCommand : number;
}

bool IsSeparator(const CXmlNode& entry) {
  return AttributeOf(&entry, "Mode") == "Separator";
}

// An ampersand would underline the letter behind it.
QString CaptionOf(const CXmlNode& entry) {
  return ToQt(AttributeOf(&entry, "Header")).replace("&", "&&");
}

QAction* MakeAction(const CXmlNode& entry, const MenuCommands& commands, QObject* parent) {
  const std::uint32_t command = CommandOf(entry);
  auto* const action = new QAction(CaptionOf(entry), parent);
  action->setData(command);
  QObject::connect(action, &QAction::triggered, parent,
                   [run = commands.run, command] { run(command); });
  return action;
}

void Refresh(const QList<QAction*>& actions, const MenuCommands& commands) {
  for (QAction* const action : actions) {
    if (action->data().isValid()) action->setEnabled(commands.isEnabled(action->data().toUInt()));
  }
}

void Fill(QMenu& menu, const CXmlNode& description, const MenuCommands& commands) {
  for (const CXmlNode* entry : description.GetChildren()) {
    if (IsSeparator(*entry)) {
      menu.addSeparator();
    } else if (!entry->GetChildren().empty()) {
      Fill(*menu.addMenu(CaptionOf(*entry)), *entry, commands);
    } else if (entry->GetAttr("id") != nullptr) {
      QAction* const action = MakeAction(*entry, commands, &menu);
      for (const Shortcut& each : kShortcuts) {
        if (each.command == CommandOf(*entry)) action->setShortcut(QKeySequence(each.keys));
      }
      menu.addAction(action);
    }
  }
  QObject::connect(&menu, &QMenu::aboutToShow, &menu,
                   [&menu, commands] { Refresh(menu.actions(), commands); });
  // A key finds a disabled entry dead, so they are all alive while the menu is closed; what can't
  // be done is refused when it comes to it.
  QObject::connect(&menu, &QMenu::aboutToHide, &menu, [&menu] {
    for (QAction* const action : menu.actions()) action->setEnabled(true);
  });
}

}  // namespace

QMenu* MakeServerMenu(const std::string& xml, const MenuCommands& commands, QWidget& parent) {
  auto* const menu = new QMenu(&parent);
  if (const auto description = ParseXml(xml)) {
    menu->setTitle(CaptionOf(*description));
    Fill(*menu, *description, commands);
  }
  return menu;
}

void FillServerToolBar(QToolBar& bar, const std::string& xml, const MenuCommands& commands) {
  const auto description = ParseXml(xml);
  if (!description) return;
  bar.setWindowTitle(CaptionOf(*description));
  for (const CXmlNode* entry : description->GetChildren()) {
    if (IsSeparator(*entry)) {
      bar.addSeparator();
    } else if (entry->GetAttr("id") != nullptr) {
      bar.addAction(MakeAction(*entry, commands, &bar));
    }
  }
}

void RefreshServerToolBar(QToolBar& bar, const MenuCommands& commands) {
  Refresh(bar.actions(), commands);
}

}  // namespace tarn::host
