#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/TreeMirror.h"
#include "views/XmlTreeCtrl.h"
#include "xml/XmlNode.h"

namespace tarn::test {

// Returns a bitmap of that size without valid pixels.
inline std::shared_ptr<const Bitmap> MakeBitmap(int width, int height) {
  auto bitmap = std::make_shared<Bitmap>();
  bitmap->size = {width, height};
  return bitmap;
}

inline std::unique_ptr<CXmlNode> ReadNode(const std::string& text) {
  auto node = std::make_unique<CXmlNode>();
  if (node->LoadWithFullEntities(text.c_str()) == nullptr) node->SetName("unreadable");
  return node;
}

inline std::string LabelOf(const CXmlNode* node) {
  if (node == nullptr) return "nothing";
  const char* const label = node->GetAttrValue("Header");
  return label == nullptr ? "nameless" : label;
}

// Window that owns a tree. Records the tree's messages with the current node at that time, and then
// runs the action of the test.
class TreeOwner : public CWnd {
 public:
  TreeOwner() { Create(kStylePopup, {100, 50, 400, 450}, nullptr, 0); }
  ~TreeOwner() override { DestroyWindow(); }

  std::unique_ptr<CXmlTreeCtrl> tree = std::make_unique<CXmlTreeCtrl>();
  std::vector<std::string> messages;
  std::function<void()> then;  // runs after every message

  // Returns the messages so far, including pending ones.
  std::vector<std::string> TakeMessages() {
    while (MessageLoop::ForCurrentThread()->Pump()) {
    }
    return std::exchange(messages, {});
  }

 protected:
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override {
    std::string line = ToString(message, wParam, lParam);
    if (message != kXmlTreeDrop) line += " " + LabelOf(tree->GetCurrentNode());
    messages.push_back(line);
    if (then) then();
    return 0;
  }
  bool OnContextMenu(Point screen) override {
    messages.push_back("menu " + std::to_string(screen.x) + "," + std::to_string(screen.y));
    return true;
  }

 private:
  static std::string ToString(std::uint32_t message, std::intptr_t wParam, std::intptr_t lParam) {
    switch (message) {
      case kXmlTreeSelect:
        return "select";
      case kXmlTreeActivate:
        return "activate";
      case kXmlTreeOpen:
        return "open";
      case kXmlTreeRightClick:
        return "right click " + std::to_string(wParam) + "," + std::to_string(lParam);
      case kXmlTreeDrop:
        return "drop " + LabelOf(reinterpret_cast<const CXmlNode*>(wParam)) + " on " +
               LabelOf(reinterpret_cast<const CXmlNode*>(lParam));
      case kXmlTreeKey:
        return "key " + std::to_string(wParam);
      case kXmlTreeReorder:
        return "reorder";
      default:
        return "message " + std::to_string(message);
    }
  }
};

}  // namespace tarn::test
