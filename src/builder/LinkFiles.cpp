#include "builder/LinkFiles.h"

#include "builder/Staleness.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

void AppendQuoted(std::string& list, const char* item, const std::string& separator) {
  if (!list.empty()) list += separator;
  list += '"';
  list += item;
  list += '"';
}

}  // namespace

void ForEachLinkFile(const NodeTypes& types, const CXmlNode* node, bool useOutput,
                     const CXmlNode* root, const std::function<void(const char*)>& onItem) {
  if (node == nullptr) return;
  if (node != root && (types.FlagsOf(*node) & kTypeInBuild) == 0) return;
  if (IsExactlyYes(*node, "Exclude") || IsExactlyYes(*node, "LinkExclude")) return;
  const char* outputFile = node->GetAttrValue("OutputFile");
  const bool isGrouping = node == root || (outputFile != nullptr && *outputFile == '\0');
  if (isGrouping) {
    bool hadContent = false;
    for (int i = 0; i < node->GetChildCount(); ++i) {
      const CXmlNode* child = node->GetChild(i);
      if (!IsContentNode(*child)) continue;
      hadContent = true;
      ForEachLinkFile(types, child, useOutput, root, onItem);
    }
    if (hadContent) return;
  }
  const char* item = useOutput ? outputFile : node->GetAttrValue("Path");
  if (item != nullptr && *item != '\0') onItem(item);
}

void CollectLinkFiles(const NodeTypes& types, std::string& list, const CXmlNode* node,
                      bool useOutput, const CXmlNode* root, const std::string& separator) {
  ForEachLinkFile(types, node, useOutput, root,
                  [&](const char* item) { AppendQuoted(list, item, separator); });
}

void CollectDebugFiles(std::string& list, const CXmlNode* node, const CXmlNode* root,
                       const std::string& separator) {
  if (node == nullptr) return;
  const char* outputFile = node->GetAttrValue("OutputFile");
  if (node == root || (outputFile != nullptr && *outputFile == '\0')) {
    bool hadContent = false;
    for (int i = 0; i < node->GetChildCount(); ++i) {
      const CXmlNode* child = node->GetChild(i);
      if (!IsContentNode(*child)) continue;
      hadContent = true;
      CollectDebugFiles(list, child, root, separator);
    }
    if (hadContent) return;
  }
  if (IsExactlyYes(*node, "LoadExclude")) return;
  const char* item = node->GetAttrValue("DBIFile");
  if (item != nullptr && *item != '\0') AppendQuoted(list, item, separator);
}

bool GetToolInput(const NodeTypes& types, const CXmlNode& node, std::string& tool,
                  std::string& fileList) {
  tool = OrEmpty(node.GetAttrValue("TranslateTool"));
  fileList.clear();
  if ((types.FlagsOf(node) & kTypeApplication) != 0) {
    CollectLinkFiles(types, fileList, &node, true, &node, ",");
  } else {
    fileList = '"' + OrEmpty(node.GetAttrValue("Path")) + '"';
  }
  return !tool.empty();
}

}  // namespace tarn
