#include "automation/TargetList.h"

#include "platform/text/Text.h"
#include "project/ProjectModel.h"
#include "wizard/TargetCatalogue.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Copies the attributes for which an element has no meaning of its own, such as sizes of memories.
void AddFacts(const CXmlNode& target, CXmlNode& entry) {
  for (const CXmlAttr& each : target.Attributes()) {
    if (each.GetName() == "Hidden" || each.GetName() == "Nickname") continue;
    if (entry.GetAttr(each.GetName().c_str()) == nullptr) {
      entry.AddAttr(each.GetName().c_str(), each.GetValue());
    }
  }
}

void AddTarget(const CXmlNode& target, CXmlNode& list) {
  const TargetDescription description = DescribeTarget(target);
  const std::string config = description.configName.value_or("");
  CXmlNode& entry = *list.AddChild("Target");
  entry.AddAttr("Header", OrEmpty(target.GetAttrValue("Header")));
  entry.AddAttr("Description", description.text);
  entry.AddAttr("Datasheet", description.datasheet.value_or(""));
  entry.AddAttr("Config", config.empty() ? kStandardConfig : config);
  AddFacts(target, entry);
}

void AddFamily(const CXmlNode& family, CXmlNode& list) {
  for (const CXmlNode* child : family.GetChildren()) {
    const bool isTarget = child->NameView() == "Target";
    if (!isTarget && child->NameView() != "Targets") continue;
    const std::string label = OrEmpty(child->GetAttrValue("Header"));
    if (label.empty()) continue;
    if (isTarget) {
      AddTarget(*child, list);
    } else {
      CXmlNode& entry = *list.AddChild("Targets");
      entry.AddAttr("Header", label);
      AddFamily(*child, entry);
    }
  }
}

}  // namespace

std::string DescribeTargets(const CXmlNode& catalogue) {
  CXmlNode list;
  list.SetName("Targets");
  const std::string problem = OrEmpty(catalogue.GetAttrValue("Problem"));
  if (!problem.empty()) list.AddAttr("Problem", problem);
  AddFamily(catalogue, list);
  return list.ToString(g_xmlDisplayOptions);
}

}  // namespace tarn
