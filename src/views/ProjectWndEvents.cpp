// Event handling of the project window. An operation of the model, the property manager or the host
// may do anything, including destroying this window; the handlers detect that by checking the
// window handle.

#include <utility>

#include "platform/text/Text.h"
#include "views/ProjectWnd.h"
#include "views/XmlTreeMessages.h"
#include "widgets/HostMessages.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr int kNameEditorId = 326;
constexpr std::uint32_t kNameEditorStyle = 0x50800080;  // with horizontal scrolling
constexpr int kNameEditorExtra = 100;                   // space for a longer name
constexpr const char* kPopupSection = "Internal";

}  // namespace

std::intptr_t CProjectWnd::OnMessage(std::uint32_t message, std::intptr_t wParam,
                                     std::intptr_t lParam) {
  const DispatchPtr held(keeper_);
  switch (message) {
    case kXmlTreeSelect:
      CloseNameEditor();
      if (model_ != nullptr) model_->SetCurrentNode(tree_.GetCurrentNode());
      break;
    case kXmlTreeActivate:
      CloseNameEditor();
      SendTypeCommand("MDblClick");
      break;
    case kXmlTreeOpen:
      CloseNameEditor();
      OnOpen();
      break;
    case kXmlTreeDrop:
      CloseNameEditor();
      if (model_ != nullptr) {
        model_->Editor().MoveNode(reinterpret_cast<CXmlNode*>(wParam),
                                  reinterpret_cast<CXmlNode*>(lParam));
      }
      break;
    case kXmlTreeRename:
      OnRename(reinterpret_cast<const char*>(wParam));
      break;
    case kXmlTreeKey:
      OnKey(static_cast<int>(wParam));
      break;
    case kXmlTreeReorder:
      if (model_ != nullptr) model_->State().MarkReordered();
      break;
    default:
      break;
  }
  return 0;
}

// Returns a property that describes the behaviour of the node's type.
std::string CProjectWnd::TypeProperty(const CXmlNode& node, const char* property) {
  return propertyManager_ == nullptr
             ? std::string()
             : propertyManager_->GetPropertyValue(node.GetName(), kPopupSection, property);
}

void CProjectWnd::SendTypeCommand(const char* property) {
  const CXmlNode* const node = tree_.GetCurrentNode();
  if (node == nullptr) return;
  const std::string command = TypeProperty(*node, property);
  SendWindowMessage(hostWindow_, kMsgCommand, ParseDecimal(command.c_str()), 0);
}

void CProjectWnd::OnOpen() {
  const CXmlNode* const node = tree_.GetCurrentNode();
  if (node == nullptr) return;
  if (node->NameView() == "Application" || node->NameView() == "Group") {
    OpenNameEditor(*node);
  } else {
    SendTypeCommand("Open");
  }
}

void CProjectWnd::OpenNameEditor(const CXmlNode& node) {
  Rect place = tree_.GetNodeTextRect(node);
  place = {place.left - 1, place.top - 1, place.right + kNameEditorExtra + 1, place.bottom + 1};
  nameEditor_ = std::make_unique<CEditName>();
  nameEditor_->SetFont(tree_.GetFont());
  nameEditor_->Create(kNameEditorStyle, place, &tree_, kNameEditorId);
  nameEditor_->SetFocus();
}

// Retires the editor instead of destroying it, since the caller may be one of its own events.
void CProjectWnd::CloseNameEditor() {
  Retire(std::move(nameEditor_));
}

void CProjectWnd::OnRename(const std::string& name) {
  const CXmlNode* const node = tree_.GetCurrentNode();
  if (node == nullptr || model_ == nullptr || propertyManager_ == nullptr) return;
  const std::string type = node->GetName();
  const WindowHandle own = GetHandle();
  propertyManager_->SetPropertyValue(type, "General", "Header", name);
  if (!IsWindow(own) || model_ == nullptr) return;
  model_->Options().StoreChangedProperty(type + ".General.Header");
  if (!IsWindow(own)) return;
  const bool isAlive = tree_.GetCurrentNode() == node;
  tree_.SetSelectedLabel(name);
  if (isAlive) tree_.SetSelectedNode(node);
  tree_.Refill();
}

void CProjectWnd::OnKey(int key) {
  if (model_ == nullptr) return;
  if (key == kKeyInsert) model_->Items().AddExistingItem(nullptr, nullptr);
  if (key == kKeyDelete) model_->Editor().RemoveItem(nullptr);
}

bool CProjectWnd::OnContextMenu(Point screen) {
  const DispatchPtr held(keeper_);
  CloseNameEditor();
  const CXmlNode* const node = tree_.GetCurrentNode();
  if (node == nullptr) return true;
  const std::string menu = TypeProperty(*node, "Menu");
  if (menu.empty()) return true;
  SendWindowMessage(hostWindow_, kMsgShowPopupMenu, reinterpret_cast<std::intptr_t>(&screen),
                    reinterpret_cast<std::intptr_t>(menu.c_str()));
  return true;
}

void CProjectWnd::OnDropFiles(const std::vector<std::string>& paths) {
  const DispatchPtr held(keeper_);
  CloseNameEditor();
  const WindowHandle own = GetHandle();
  for (const std::string& path : paths) {
    if (!IsWindow(own) || model_ == nullptr) return;
    model_->Items().AddExistingItem(path.c_str(), nullptr);
  }
}

}  // namespace tarn
