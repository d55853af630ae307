#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/text/Text.h"
#include "support/TestEnvironment.h"
#include "xml/XmlNode.h"

namespace tarn::shipped {

// Returns a path below the folder share of the source tree.
inline std::string Path(const std::string& relative) {
  return testing::SourcePath("share/" + relative);
}

using testing::ReadBytes;

// Parses a text completely with Tarn's parser. If there is an error, fails the calling test and
// returns nullptr.
inline std::unique_ptr<CXmlNode> Parse(const std::string& text) {
  CXmlParseInfo parseInfo;
  auto root = std::make_unique<CXmlNode>();
  const char* end = root->Load(text, parseInfo);
  if (end == nullptr) {
    ADD_FAILURE() << "error " << parseInfo.errorCode << ": " << parseInfo.errorText;
    return nullptr;
  }
  // An element that is not closed is not an error but extends to the end of the text. A correct
  // file ends with the end tag of its root.
  const std::string close = "</" + root->GetName() + ">";
  const auto length = static_cast<std::size_t>(end - text.c_str());
  if (length < close.size() || text.substr(length - close.size(), close.size()) != close) {
    ADD_FAILURE() << "the text ends before " << close;
    return nullptr;
  }
  return root;
}

// Returns the child elements, without comments etc.
inline std::vector<CXmlNode*> Elements(const CXmlNode& parent) {
  std::vector<CXmlNode*> children = parent.GetChildren();
  std::erase_if(children, [](const CXmlNode* child) { return child->GetType() != XmlElement; });
  return children;
}

// Returns the attribute's value; empty if it is missing.
inline std::string Attribute(const CXmlNode& node, const char* name) {
  return OrEmpty(node.GetAttrValue(name));
}

}  // namespace tarn::shipped
