#include "hosts/core/TargetEntry.h"

#include "hosts/core/LogEntry.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

void Collect(const CXmlNode& family, std::vector<std::string>& families,
             std::vector<TargetEntry>& targets) {
  for (const CXmlNode* child : family.GetChildren()) {
    const std::string name = GetAttribute(child, "Header");
    if (child->NameView() == "Target") {
      targets.push_back({name, families, GetAttribute(child, "Description"),
                         GetAttribute(child, "Datasheet"), GetAttribute(child, "Config")});
    } else {
      families.push_back(name);
      Collect(*child, families, targets);
      families.pop_back();
    }
  }
}

}  // namespace

std::vector<TargetEntry> ReadTargets(const std::string& xml) {
  std::vector<TargetEntry> targets;
  std::vector<std::string> families;
  if (const auto root = ParseXml(xml)) Collect(*root, families, targets);
  return targets;
}

std::string ReadTargetProblem(const std::string& xml) {
  return GetAttribute(ParseXml(xml).get(), "Problem");
}

}  // namespace tarn::host
