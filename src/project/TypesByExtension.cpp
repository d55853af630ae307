#include "project/TypesByExtension.h"

#include "patterns/Parser.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

void TypesByExtension::Fill() {
  types_.clear();
  last_ = {};
  const CXmlNode& records = services_.types.GetRoot();
  for (int i = 0; i < records.GetChildCount(); ++i) {
    const CXmlNode* record = records.GetChild(i);
    std::string extensions = services_.propertyManager->GetPropertyValue(
        "Target", "Internal", record->GetName() + "-Ext");
    if (extensions.empty()) extensions = OrEmpty(record->GetAttrValue("Extension"));
    const CParser entries(extensions, ";");
    for (int entry = 0; entry < entries.GetCount(); ++entry) {
      types_["." + FoldCase(entries.GetToken(entry))] = record;
    }
  }
  isKnown_ = true;
}

const CXmlNode* TypesByExtension::Find(std::string_view path) {
  if (!isKnown_) Fill();
  // Usually the same as for the previous file.
  std::string extension = ExtensionOf(path);
  if (extension == last_.first) return last_.second;
  const auto found = types_.find(FoldCase(extension));
  last_ = {std::move(extension), found == types_.end() ? nullptr : found->second};
  return last_.second;
}

}  // namespace tarn
