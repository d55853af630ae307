#include "hosts/desktop/PopupMenus.h"

#include <QMenu>

#include "hosts/core/LogEntry.h"
#include "xml/XmlNode.h"

namespace tarn::host {

PopupMenus::PopupMenus() = default;
PopupMenus::~PopupMenus() = default;

void PopupMenus::Load(FileSystem& files, const std::string& configFile) {
  const Result<std::string> text = files.ReadWholeFile(configFile);
  configuration_ = text ? ParseXml(*text) : nullptr;
}

void PopupMenus::Show(const std::string& name, QPoint screen, const MenuCommands& commands,
                      QWidget& parent) const {
  const CXmlNode* const description = Find(name);
  if (description == nullptr) return;
  QMenu* const menu = MakeServerMenu(*description, commands, parent);
  menu->setObjectName("popup" + QString::fromStdString(name));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (menu->isEmpty()) {
    menu->deleteLater();
    return;
  }
  menu->popup(screen);
}

const CXmlNode* PopupMenus::Find(const std::string& name) const {
  if (configuration_ == nullptr) return nullptr;
  for (const CXmlNode* section : configuration_->GetChildren()) {
    if (section->GetName() != "PopupMenus") continue;
    for (const CXmlNode* menu : section->GetChildren()) {
      if (GetAttribute(menu, "Name") == name) return menu;
    }
  }
  return nullptr;
}

}  // namespace tarn::host
