#include "builder/BuildFailures.h"

#include <algorithm>

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

void BuildFailures::AddNode(const CXmlNode& node, const std::vector<std::string>& outputs) {
  nodes_.insert(&node);
  outputs_.insert(outputs.begin(), outputs.end());
}

bool BuildFailures::IsInputMissing(const CXmlNode& node) const {
  if (outputs_.empty()) return false;
  const auto isMissing = [this](const std::string& path) { return outputs_.contains(path); };
  if (isMissing(OrEmpty(node.GetAttrValue("Path")))) return true;
  const std::vector<std::string> headers = HeadersOf(node);
  return std::any_of(headers.begin(), headers.end(), isMissing);
}

std::vector<std::string> HeadersOf(const CXmlNode& node) {
  std::vector<std::string> headers;
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->NameView() != "Dependencies") continue;
    for (const CXmlNode* each : child->GetChildren()) {
      headers.push_back(OrEmpty(each->GetAttrValue("Header")));
    }
  }
  return headers;
}

}  // namespace tarn
