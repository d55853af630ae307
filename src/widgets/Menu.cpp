#include "widgets/Menu.h"

#include <utility>

namespace tarn {

void CMenu::AppendSeparator() {
  entries_.emplace_back().kind = Kind::Separator;
}

CMenu::Entry& CMenu::AppendCommand(int id, std::string text) {
  Entry& entry = entries_.emplace_back();
  entry.id = id;
  entry.text = std::move(text);
  return entry;
}

CMenu::Entry& CMenu::AppendSubmenu(std::unique_ptr<CMenu> submenu, std::string text) {
  Entry& entry = entries_.emplace_back();
  entry.kind = Kind::Submenu;
  entry.text = std::move(text);
  entry.submenu = std::move(submenu);
  return entry;
}

}  // namespace tarn
