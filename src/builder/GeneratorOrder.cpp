#include "builder/GeneratorOrder.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "builder/Staleness.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

void Collect(const NodeTypes& types, CXmlNode& parent, std::vector<CXmlNode*>& found) {
  for (int i = 0; i < parent.GetChildCount(); ++i) {
    CXmlNode& child = *parent.GetChild(i);
    const std::uint32_t flags = types.FlagsOf(child);
    if (!IsContentNode(child) || (flags & kTypeBuild) == 0 || IsExactlyYes(child, "Exclude")) {
      continue;
    }
    if ((flags & kTypeFirst) != 0) found.push_back(&child);
    Collect(types, child, found);
  }
}

bool Makes(const CXmlNode& node, const CXmlNode& user) {
  const std::string output = WithoutStamp(OrEmpty(node.GetAttrValue("OutputFile")));
  return &node != &user && !output.empty() &&
         EqualNoCase(output, OrEmpty(user.GetAttrValue("Path")));
}

}  // namespace

std::vector<CXmlNode*> FindGenerators(const NodeTypes& types, CXmlNode& application) {
  std::vector<CXmlNode*> found;
  Collect(types, application, found);
  std::vector<CXmlNode*> ordered;
  std::unordered_set<CXmlNode*> seen;
  // Depth-first search; a cycle is left in the order of the project.
  const std::function<void(CXmlNode*)> add = [&](CXmlNode* node) {
    if (!seen.insert(node).second) return;
    for (CXmlNode* each : found) {
      if (Makes(*each, *node)) add(each);
    }
    ordered.push_back(node);
  };
  for (CXmlNode* each : found) add(each);
  return ordered;
}

}  // namespace tarn
