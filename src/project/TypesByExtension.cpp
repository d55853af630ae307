#include "project/TypesByExtension.h"

#include "patterns/Parser.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

void TypesByExtension::Fill() {
  types.clear();
  last = {};
  const CXmlNode& records = services.types.GetRoot();
  for (int i = 0; i < records.GetChildCount(); ++i) {
    const CXmlNode* record = records.GetChild(i);
    std::string extensions = services.propertyManager->GetPropertyValue("Target", "Internal",
                                                                        record->GetName() + "-Ext");
    if (extensions.empty()) extensions = TextOf(record->GetAttrValue("Extension"));
    const CParser entries(extensions, ";");
    for (int entry = 0; entry < entries.GetCount(); ++entry) {
      types["." + FoldCase(entries.GetToken(entry))] = record;
    }
  }
  isKnown = true;
}

const CXmlNode* TypesByExtension::Find(std::string_view path) {
  if (!isKnown) Fill();
  // Usually the same as for the previous file.
  std::string extension = ExtensionOf(path);
  if (extension == last.first) return last.second;
  const auto found = types.find(FoldCase(extension));
  last = {std::move(extension), found == types.end() ? nullptr : found->second};
  return last.second;
}

}  // namespace tarn
