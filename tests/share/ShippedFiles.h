#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/text/Text.h"
#include "support/Surroundings.h"
#include "xml/XmlNode.h"

namespace tarn::shipped {

// A path below the folder share of the sources.
inline std::string Path(const std::string& relative) {
  return testing::SourcePath("share/" + relative);
}

using testing::ReadBytes;

// The tree of a text, read to its end as the system reads it; null, and the calling test fails,
// when the parser finds a fault.
inline std::unique_ptr<CXmlNode> Parse(const std::string& text) {
  CXmlParseInfo parseInfo;
  auto root = std::make_unique<CXmlNode>();
  const char* end = root->Load(text, parseInfo);
  if (end == nullptr) {
    ADD_FAILURE() << "error " << parseInfo.errorCode << ": " << parseInfo.errorText;
    return nullptr;
  }
  // An element that is never closed is no error, but swallows what follows up to the end of the
  // text; a file in order ends in its root's closing tag.
  const std::string close = "</" + root->GetName() + ">";
  const auto length = static_cast<std::size_t>(end - text.c_str());
  if (length < close.size() || text.substr(length - close.size(), close.size()) != close) {
    ADD_FAILURE() << "the text ends before " << close;
    return nullptr;
  }
  return root;
}

// The child elements, comments and the like left out.
inline std::vector<CXmlNode*> Elements(const CXmlNode& parent) {
  std::vector<CXmlNode*> children = parent.GetChildren();
  std::erase_if(children, [](const CXmlNode* child) { return child->GetType() != XmlElement; });
  return children;
}

// The attribute's value, empty when there is none.
inline std::string Attribute(const CXmlNode& node, const char* name) {
  return TextOf(node.GetAttrValue(name));
}

}  // namespace tarn::shipped
