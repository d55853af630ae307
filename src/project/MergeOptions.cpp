#include "project/MergeOptions.h"

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

bool Match(const CXmlNode& a, const CXmlNode& b) {
  if (a.NameView() != b.NameView()) return false;
  const char* aHeader = a.GetAttrValue("Header");
  const char* bHeader = b.GetAttrValue("Header");
  return aHeader != nullptr && bHeader != nullptr && EqualNoCase(aHeader, bHeader);
}

const CXmlNode* FirstMatch(const CXmlNode& parent, const CXmlNode& wanted) {
  for (int i = 0; i < parent.GetChildCount(); ++i) {
    if (Match(*parent.GetChild(i), wanted)) return parent.GetChild(i);
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<CXmlNode> MergeOptions(const CXmlNode& oldOptions, const CXmlNode& newOptions) {
  auto result = CXmlNode::CreateNode(newOptions.NameText(), newOptions.ValueText());
  result->CopyAttrs(newOptions);
  for (int i = 0; i < oldOptions.GetChildCount(); ++i) {
    const CXmlNode& old = *oldOptions.GetChild(i);
    if (const CXmlNode* changed = FirstMatch(newOptions, old)) {
      result->AppendChild(MergeOptions(old, *changed));
    } else {
      result->AppendCopy(old);
    }
  }
  for (int i = 0; i < newOptions.GetChildCount(); ++i) {
    const CXmlNode& added = *newOptions.GetChild(i);
    if (FirstMatch(*result, added) == nullptr) result->AppendCopy(added);
  }
  return result;
}

}  // namespace tarn
