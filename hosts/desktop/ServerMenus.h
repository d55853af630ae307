#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

class QMenu;
class QToolBar;
class QWidget;

namespace tarn {
class CXmlNode;
}

namespace tarn::host {

// A tool that accepts the current node.
struct ToolEntry {
  std::uint32_t command = 0;
  std::string name;
  std::string id = {};      // in the tools' definitions
  bool isCompiler = false;  // or another tool that translates files
};

struct ConfigurationEntry {
  std::string name;
  bool isInForce = false;
};

// A command of the host, which a menu names in the attribute Host of an entry.
struct HostCommand {
  std::function<bool()> isEnabled;
  std::function<void()> run;
};

// Callbacks and data for menus and tool bars. These are created from XML descriptions sent by the
// server: the children of an element are its entries, and an entry with children is a submenu.
// Enabled states are queried each time entries are shown.
struct MenuCommands {
  std::function<bool(std::uint32_t command)> isEnabled;
  std::function<void(std::uint32_t command)> run;
  std::function<std::vector<ToolEntry>()> listTools;  // for the entry that lists tools
  // For the entry that lists configurations.
  std::function<std::vector<ConfigurationEntry>()> listConfigurations;
  std::function<void(const std::string& name)> chooseConfiguration;
  std::map<std::string, HostCommand> hostCommands;
  std::string pictureFolder;  // base folder of the entries' icon names
};

// Parses the server's list of tools.
std::vector<ToolEntry> ReadToolEntries(const std::string& xml);
// Removes the compilers of other families than that of the node's own tool.
std::vector<ToolEntry> WithoutForeignTools(std::vector<ToolEntry> tools, const std::string& own);

// Creates a menu from its description; an invalid one results in an empty menu. `parent` owns the
// menu. Shortcuts are active in menus of the menu bar; in popup menus they are only displayed.
QMenu* MakeServerMenu(const std::string& xml, const MenuCommands& commands, QWidget& parent);
QMenu* MakeServerMenu(const CXmlNode& description, const MenuCommands& commands, QWidget& parent);
// Adds the shortcuts that work while the tree has the keyboard focus.
void AddTreeShortcuts(QWidget& tree, const MenuCommands& commands);
void FillServerToolBar(QToolBar& bar, const std::string& xml, const MenuCommands& commands);
// Updates the enabled states of the buttons; call this periodically, because they are always
// visible.
void RefreshServerToolBar(QToolBar& bar, const MenuCommands& commands);

}  // namespace tarn::host
