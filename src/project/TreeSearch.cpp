#include "project/TreeSearch.h"

#include "platform/text/Text.h"
#include "project/NodeTypes.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

bool Matches(const CXmlNode& node, const char* value, const char* attrName) {
  if (attrName == nullptr) return EqualNoCase(node.NameView(), value);
  const char* attribute = node.GetAttrValue(attrName);
  return attribute != nullptr && EqualNoCase(attribute, value);
}

}  // namespace

void FindChildNode(const char* value, const char* attrName, const CXmlNode* parent,
                   CXmlNode*& found) {
  if (parent == nullptr || value == nullptr) return;
  for (int i = parent->GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = parent->GetChild(i);
    if (Matches(*child, value, attrName)) {
      found = child;
      return;
    }
  }
}

void FindTreeNode(const char* value, const char* attrName, CXmlNode* start, CXmlNode*& found) {
  if (start == nullptr || value == nullptr) return;
  if (Matches(*start, value, attrName)) {
    found = start;
    return;
  }
  for (int i = 0; i < start->GetChildCount(); ++i) {
    CXmlNode* child = start->GetChild(i);
    if (IsContentNode(*child)) FindTreeNode(value, attrName, child, found);
  }
}

CXmlNode* FindStoredValues(const CXmlNode& node) {
  // Publishing appends the values, so they are near the end.
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = node.GetChild(i);
    if (child->GetType() == XmlCData && child->NameView() == "#CDATA") return child;
  }
  return nullptr;
}

bool IsAtOrBelow(const CXmlNode* node, const CXmlNode& top) {
  while (node != nullptr && node != &top) node = node->GetParent();
  return node != nullptr;
}

}  // namespace tarn
