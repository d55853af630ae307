#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tarn {

// A popup menu: an ordered list of entries, each a command, a separator or a submenu.
class CMenu {
 public:
  enum class Kind { Command, Separator, Submenu };

  // `id` is the command of a Command entry, `submenu` is set for a Submenu entry.
  struct Entry {
    Kind kind = Kind::Command;
    int id = 0;
    std::string text;
    bool isChecked = false;
    bool isEnabled = true;
    std::unique_ptr<CMenu> submenu;
  };

  // Append an entry. Menus are built once for each time they are shown, so there is no way to
  // remove one.
  void AppendSeparator();
  // The returned entry may be changed until the next one is added.
  Entry& AppendCommand(int id, std::string text);
  Entry& AppendSubmenu(std::unique_ptr<CMenu> submenu, std::string text);

  const std::vector<Entry>& GetEntries() const { return entries_; }

 private:
  std::vector<Entry> entries_;
};

}  // namespace tarn
