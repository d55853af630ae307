#include "hosts/desktop/ServerMenus.h"

#include <tarn/commands.h>

#include <QAction>
#include <QIcon>
#include <QKeySequence>
#include <QMenu>
#include <QShortcut>
#include <QToolBar>
#include <algorithm>
#include <cstdlib>

#include "hosts/core/LogEntry.h"
#include "hosts/core/ServerDrivers.h"
#include "hosts/desktop/Mnemonics.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr std::uint32_t kFirstServerCommand = 32772;
constexpr std::uint32_t kFirstCommonCommand = 57601;

// Scope of a shortcut. In an editor some keys have a different meaning; the tree handles some keys
// by itself.
enum class Reach { Window, Tree, TreeItself };

struct Shortcut {
  std::uint32_t command;
  const char* keys;
  Reach reach;
};

// The usual shortcuts for these commands.
constexpr Shortcut kShortcuts[] = {
    {TARN_CMD_BUILD_ALL, "F7", Reach::Window},
    {TARN_CMD_REBUILD_ALL, "Ctrl+Alt+F7", Reach::Window},
    {TARN_CMD_TRANSLATE_NODE, "Ctrl+F7", Reach::Window},
    {TARN_CMD_BUILD_APPLICATION, "Shift+F7", Reach::Window},
    {TARN_CMD_STOP, "Ctrl+Pause", Reach::Window},
    {TARN_CMD_COPY, "Ctrl+C", Reach::Tree},
    {TARN_CMD_PASTE, "Ctrl+V", Reach::Tree},
    {TARN_CMD_NODE_OPTIONS, "Alt+Return", Reach::Tree},
    {TARN_CMD_ADD_FILES, "Ins", Reach::TreeItself},
    {TARN_CMD_REMOVE_NODE, "Del", Reach::TreeItself},
};

std::uint32_t CommandOf(const CXmlNode& entry) {
  const auto number = static_cast<std::uint32_t>(std::atoi(GetAttribute(&entry, "id").c_str()));
  return number < kFirstCommonCommand ? number + kFirstServerCommand : number;
}

bool IsSeparator(const CXmlNode& entry) {
  return GetAttribute(&entry, "Mode") == "Separator";
}

QString CaptionOf(const CXmlNode& entry) {
  return ToQtLabel(GetAttribute(&entry, "Header"));
}

// Returns an action that does nothing yet.
QAction* NewAction(const CXmlNode& entry, const MenuCommands& commands, QObject* parent) {
  auto* const action = new QAction(CaptionOf(entry), parent);
  const std::string picture = GetAttribute(&entry, "Icon");
  if (!picture.empty()) action->setIcon(QIcon(ToQt(JoinPath(commands.pictureFolder, picture))));
  return action;
}

QAction* MakeAction(const CXmlNode& entry, const MenuCommands& commands, QObject* parent) {
  const std::uint32_t command = CommandOf(entry);
  QAction* const action = NewAction(entry, commands, parent);
  action->setData(command);
  QObject::connect(action, &QAction::triggered, parent,
                   [run = commands.run, command] { run(command); });
  return action;
}

// Adds the entry of a command of this host, unless it is one of another host.
void AddHostAction(QMenu& menu, const CXmlNode& entry, const MenuCommands& commands) {
  const auto found = commands.hostCommands.find(GetAttribute(&entry, "Host"));
  if (found == commands.hostCommands.end()) return;
  QAction* const action = NewAction(entry, commands, &menu);
  QObject::connect(action, &QAction::triggered, &menu, found->second.run);
  QObject::connect(&menu, &QMenu::aboutToShow, action,
                   [action, test = found->second.isEnabled] { action->setEnabled(test()); });
  menu.addAction(action);
}

void FillTools(QMenu& menu, const MenuCommands& commands) {
  menu.clear();
  for (const ToolEntry& tool : commands.listTools()) {
    QAction* const action = menu.addAction(Translated(tool.name).replace("&", "&&"));
    QObject::connect(action, &QAction::triggered, &menu,
                     [run = commands.run, command = tool.command] { run(command); });
  }
  menu.menuAction()->setEnabled(!menu.isEmpty());
}

void FillConfigurations(QMenu& menu, const MenuCommands& commands) {
  menu.clear();
  for (const ConfigurationEntry& each : commands.listConfigurations()) {
    QAction* const action = menu.addAction(ToQt(each.name).replace("&", "&&"));
    action->setCheckable(true);
    action->setChecked(each.isInForce);
    QObject::connect(action, &QAction::triggered, &menu,
                     [choose = commands.chooseConfiguration, name = each.name] { choose(name); });
  }
  menu.menuAction()->setEnabled(!menu.isEmpty());
}

// Entries that represent a list have it as a submenu, which is rebuilt each time it is shown.
using FillList = void (*)(QMenu& menu, const MenuCommands& commands);
FillList ListOf(std::uint32_t command) {
  if (command == TARN_CMD_LIST_TOOLS) return FillTools;
  return command == TARN_CMD_SELECT_CONFIGURATION ? FillConfigurations : nullptr;
}

void ShowShortcut(QAction& action, std::uint32_t command) {
  for (const Shortcut& each : kShortcuts) {
    if (each.command != command) continue;
    const QKeySequence keys(each.keys);
    if (each.reach == Reach::Window) {
      action.setShortcut(keys);
    } else {
      action.setText(action.text() + '\t' + keys.toString(QKeySequence::NativeText));
    }
  }
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
    } else if (entry->GetAttr("id") == nullptr) {
      AddHostAction(menu, *entry, commands);
    } else if (const FillList fill = ListOf(CommandOf(*entry))) {
      QMenu* const list = menu.addMenu(CaptionOf(*entry));
      QObject::connect(&menu, &QMenu::aboutToShow, list,
                       [list, fill, commands] { fill(*list, commands); });
      KeepMnemonics(*list);
    } else {
      QAction* const action = MakeAction(*entry, commands, &menu);
      ShowShortcut(*action, CommandOf(*entry));
      menu.addAction(action);
    }
  }
  QObject::connect(&menu, &QMenu::aboutToShow, &menu,
                   [&menu, commands] { Refresh(menu.actions(), commands); });
  // A shortcut doesn't trigger a disabled action, so all actions are enabled while the menu is
  // closed; commands that are currently impossible are refused on execution.
  QObject::connect(&menu, &QMenu::aboutToHide, &menu, [&menu] {
    for (QAction* const action : menu.actions()) action->setEnabled(true);
  });
  KeepMnemonics(menu);
}

}  // namespace

std::vector<ToolEntry> ReadToolEntries(const std::string& xml) {
  std::vector<ToolEntry> tools;
  const auto list = ParseXml(xml);
  if (!list) return tools;
  for (const CXmlNode* each : list->GetChildren()) {
    const std::string title = GetAttribute(each, "Title");
    const auto command = static_cast<std::uint32_t>(std::atoi(GetAttribute(each, "Id").c_str()));
    if (command < TARN_CMD_FIRST_TOOL || command > TARN_CMD_LAST_TOOL) continue;
    const std::string id = GetAttribute(each, "Header");
    tools.push_back(
        {command, title.empty() ? id : title, id, each->GetAttr("Toolchain") != nullptr});
  }
  return tools;
}

// Tools of one family have names such as "sdcc-stm8.c"; the toolchain "sdcc" has several families.
std::vector<ToolEntry> WithoutForeignTools(std::vector<ToolEntry> tools, const std::string& own) {
  const auto used = std::ranges::find(tools, own, &ToolEntry::id);
  if (used == tools.end() || !used->isCompiler) return tools;
  const auto familyOf = [](const std::string& id) { return id.substr(0, id.find('.')); };
  std::erase_if(tools, [family = familyOf(own), &familyOf](const ToolEntry& each) {
    return each.isCompiler && familyOf(each.id) != family;
  });
  return tools;
}

QMenu* MakeServerMenu(const std::string& xml, const MenuCommands& commands, QWidget& parent) {
  const auto description = ParseXml(xml);
  return description ? MakeServerMenu(*description, commands, parent) : new QMenu(&parent);
}

QMenu* MakeServerMenu(const CXmlNode& description, const MenuCommands& commands, QWidget& parent) {
  auto* const menu = new QMenu(CaptionOf(description), &parent);
  Fill(*menu, description, commands);
  return menu;
}

void AddTreeShortcuts(QWidget& tree, const MenuCommands& commands) {
  for (const Shortcut& each : kShortcuts) {
    if (each.reach != Reach::Tree) continue;
    auto* const shortcut = new QShortcut(QKeySequence(each.keys), &tree);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(shortcut, &QShortcut::activated, &tree,
                     [run = commands.run, command = each.command] { run(command); });
  }
}

void FillServerToolBar(QToolBar& bar, const std::string& xml, const MenuCommands& commands) {
  const auto description = ParseXml(xml);
  if (!description) return;
  bar.setWindowTitle(WithoutMnemonic(CaptionOf(*description)));
  for (const CXmlNode* entry : description->GetChildren()) {
    if (IsSeparator(*entry)) {
      bar.addSeparator();
    } else if (entry->GetAttr("id") != nullptr) {
      QAction* const action = MakeAction(*entry, commands, &bar);
      for (const Shortcut& each : kShortcuts) {
        if (each.command == CommandOf(*entry) && each.reach == Reach::Window) {
          action->setToolTip(QStringLiteral("%1 (%2)").arg(
              WithoutMnemonic(CaptionOf(*entry)),
              QKeySequence(each.keys).toString(QKeySequence::NativeText)));
        }
      }
      bar.addAction(action);
    }
  }
}

void RefreshServerToolBar(QToolBar& bar, const MenuCommands& commands) {
  Refresh(bar.actions(), commands);
}

}  // namespace tarn::host
