#pragma once

#include <cstdint>
#include <functional>
#include <string>

class QMenu;
class QToolBar;
class QWidget;

namespace tarn::host {

// Makes menus and tool bars from the descriptions that the server sends: an element whose elements
// are the entries, one with elements of its own being a menu again. The entries ask whether they
// are enabled whenever they are shown.
struct MenuCommands {
  std::function<bool(std::uint32_t command)> isEnabled;
  std::function<void(std::uint32_t command)> run;
};

// `parent` owns the menu. A description that can't be read gives an empty one.
QMenu* MakeServerMenu(const std::string& xml, const MenuCommands& commands, QWidget& parent);
void FillServerToolBar(QToolBar& bar, const std::string& xml, const MenuCommands& commands);
// Buttons of a tool bar are always seen, so their states are to be refreshed now and then.
void RefreshServerToolBar(QToolBar& bar, const MenuCommands& commands);

}  // namespace tarn::host
