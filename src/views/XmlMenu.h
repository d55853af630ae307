#pragma once

#include <memory>
#include <string>

#include "widgets/Menu.h"

namespace tarn {

class CXmlNode;

// Popup menu created from a description: a `Menu` element whose child elements are the entries. An
// entry with child elements is a submenu. Main thread only.
class CXmlMenu {
 public:
  CXmlMenu();
  ~CXmlMenu();
  CXmlMenu(const CXmlMenu&) = delete;
  CXmlMenu& operator=(const CXmlMenu&) = delete;

  // Parses a description. If it is damaged, the entries before the damage are used. Returns false
  // and leaves the menu unchanged if it doesn't describe a menu.
  bool LoadFromXml(const std::string& text);
  // Recreates the menu from the description.
  bool Rebuild();
  // Never returns nullptr. Borrowed; valid until the next Rebuild().
  const CMenu* GetMenu() const { return menu_.get(); }

 private:
  std::unique_ptr<CMenu> menu_;
  std::unique_ptr<CXmlNode> root_;
};

}  // namespace tarn
