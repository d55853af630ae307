#include "views/XmlMenu.h"

#include <utility>

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Smaller ids are offsets from the first command id of the project manager.
constexpr int kFirstFrameCommand = 57601;
constexpr int kCommandBase = 32772;

int CommandOf(const char* id) {
  const int number = ParseDecimal(id);
  return number < kFirstFrameCommand ? number + kCommandBase : number;
}

void Fill(CMenu& menu, const CXmlNode& description) {
  for (int i = 0; i < description.GetChildCount(); ++i) {
    const CXmlNode& entry = *description.GetChild(i);
    const std::string header = OrEmpty(entry.GetAttrValue("Header"));
    if (OrEmpty(entry.GetAttrValue("Mode")) == "Separator") {
      menu.AppendSeparator();
    } else if (entry.GetChildCount() > 0) {
      auto submenu = std::make_unique<CMenu>();
      Fill(*submenu, entry);
      menu.AppendSubmenu(std::move(submenu), header);
    } else if (const char* id = entry.GetAttrValue("id")) {
      menu.AppendCommand(CommandOf(id), header);
    }
  }
}

}  // namespace

CXmlMenu::CXmlMenu() : menu_(std::make_unique<CMenu>()), root_(CXmlNode::CreateNode("")) {}

CXmlMenu::~CXmlMenu() = default;

bool CXmlMenu::LoadFromXml(const std::string& text) {
  root_ = CXmlNode::CreateNode("");
  root_->Load(text, g_xmlParseInfo);
  return root_->NameView() == "Menu" && Rebuild();
}

bool CXmlMenu::Rebuild() {
  auto made = std::make_unique<CMenu>();
  Fill(*made, *root_);
  menu_ = std::move(made);
  return true;
}

}  // namespace tarn
