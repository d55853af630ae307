#pragma once

#include <QPoint>
#include <memory>
#include <string>

#include "hosts/desktop/ServerMenus.h"
#include "platform/files/FileSystem.h"
#include "xml/XmlNode.h"

namespace tarn::host {

// The popup menus that the server asks for by name, as its configuration file describes them.
class PopupMenus {
 public:
  // A file that can't be read has no menus.
  void Load(FileSystem& files, const std::string& configFile);
  bool Has(const std::string& name) const { return Find(name) != nullptr; }
  // Shows the menu and returns at once; the menu goes when it is closed. Nothing for a name that no
  // menu has.
  void Show(const std::string& name, QPoint screen, const MenuCommands& commands,
            QWidget& parent) const;

 private:
  const CXmlNode* Find(const std::string& name) const;

  std::unique_ptr<CXmlNode> configuration;
};

}  // namespace tarn::host
