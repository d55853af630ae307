#pragma once

#include <QPoint>
#include <memory>
#include <string>

#include "hosts/desktop/ServerMenus.h"
#include "platform/files/FileSystem.h"

namespace tarn {
class CXmlNode;
}

namespace tarn::host {

// The popup menus that the server requests by name, as defined in its configuration file.
class PopupMenus {
 public:
  PopupMenus();
  PopupMenus(const PopupMenus&) = delete;
  PopupMenus& operator=(const PopupMenus&) = delete;
  ~PopupMenus();

  // Loads the definitions; there are no menus if the file can't be read.
  void Load(FileSystem& files, const std::string& configFile);
  bool Has(const std::string& name) const { return Find(name) != nullptr; }
  // Shows the menu and returns immediately; the menu is deleted when it is closed. No-op for an
  // unknown name.
  void Show(const std::string& name, QPoint screen, const MenuCommands& commands,
            QWidget& parent) const;

 private:
  const CXmlNode* Find(const std::string& name) const;

  std::unique_ptr<CXmlNode> configuration_;
};

}  // namespace tarn::host
