#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class QMenu;
class QToolBar;
class QWidget;

namespace tarn {
class CXmlNode;
}

namespace tarn::host {

// A tool that fits the current node.
struct ToolEntry {
  std::uint32_t command = 0;
  std::string name;
};

struct ConfigurationEntry {
  std::string name;
  bool isInForce = false;
};

// Makes menus and tool bars from the descriptions that the server sends: an element whose elements
// are the entries, one with elements of its own being a menu again. The entries ask whether they
// are enabled whenever they are shown.
struct MenuCommands {
  std::function<bool(std::uint32_t command)> isEnabled;
  std::function<void(std::uint32_t command)> run;
  std::function<std::vector<ToolEntry>()> listTools;  // for the entry that stands for all of them
  // For the entry that stands for all of them.
  std::function<std::vector<ConfigurationEntry>()> listConfigurations;
  std::function<void(const std::string& name)> chooseConfiguration;
  std::string pictureFolder;  // which the entries' pictures are named from
};

// The server's answer to the question for them.
std::vector<ToolEntry> ReadToolEntries(const std::string& xml);

// Shortcuts work in menus of the menu bar; others just show them.

// `parent` owns the menu. A description that can't be read gives an empty one.
QMenu* MakeServerMenu(const std::string& xml, const MenuCommands& commands, QWidget& parent);
QMenu* MakeServerMenu(const CXmlNode& description, const MenuCommands& commands, QWidget& parent);
// What works by key while the window of the tree has the keyboard.
void AddTreeShortcuts(QWidget& tree, const MenuCommands& commands);
void FillServerToolBar(QToolBar& bar, const std::string& xml, const MenuCommands& commands);
// Buttons of a tool bar are always seen, so their states are to be refreshed now and then.
void RefreshServerToolBar(QToolBar& bar, const MenuCommands& commands);

}  // namespace tarn::host
