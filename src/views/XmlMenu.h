#pragma once

#include <memory>
#include <string>

#include "widgets/Menu.h"
#include "xml/XmlNode.h"

namespace tarn {

// A popup menu made from a description: a `Menu` element whose elements are the entries, an entry
// with elements of its own being a menu again. Host's thread.
class CXmlMenu {
 public:
  CXmlMenu();
  ~CXmlMenu();
  CXmlMenu(const CXmlMenu&) = delete;
  CXmlMenu& operator=(const CXmlMenu&) = delete;

  // Reads a description. A damaged one yields the entries in front of the damage. False, with the
  // menu as it was, when it describes no menu.
  bool LoadFromXml(const std::string& text);
  // Makes the menu anew from the description.
  bool Rebuild();
  // Never null; borrowed until the next Rebuild.
  const CMenu* GetMenu() const { return menu.get(); }

 private:
  std::unique_ptr<CMenu> menu;
  std::unique_ptr<CXmlNode> root;
};

}  // namespace tarn
