#include "share/ShippedFiles.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace tarn::shipped {

std::string Path(const std::string& relative) {
  const char* sources = std::getenv("TARN_SOURCE_DIR");
  return std::string(sources ? sources : ".") + "/share/" + relative;
}

std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::unique_ptr<CXmlNode> Parse(const std::string& text) {
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

std::vector<CXmlNode*> Elements(const CXmlNode& parent) {
  std::vector<CXmlNode*> elements;
  for (CXmlNode* child : parent.GetChildren()) {
    if (child->GetType() == XmlElement) elements.push_back(child);
  }
  return elements;
}

std::string Attribute(const CXmlNode& node, const char* name) {
  const char* value = node.GetAttrValue(name);
  return value ? value : "";
}

}  // namespace tarn::shipped
