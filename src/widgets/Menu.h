#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tarn {

// A popup menu: its entries in order, each a command, a separator or a menu of its own.
class CMenu {
 public:
  enum class Kind { Command, Separator, Submenu };

  struct Entry {
    Kind kind = Kind::Command;
    int id = 0;
    std::string text;
    bool isChecked = false;
    bool isEnabled = true;
    std::unique_ptr<CMenu> submenu;
  };

  void AppendSeparator();
  // The entry may be changed until the next one is added.
  Entry& AppendCommand(int id, std::string text);
  Entry& AppendSubmenu(std::unique_ptr<CMenu> submenu, std::string text);

  const std::vector<Entry>& GetEntries() const { return entries; }

 private:
  std::vector<Entry> entries;
};

}  // namespace tarn
