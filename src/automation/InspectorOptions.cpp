// Origin of the values of options.

#include <vector>

#include "automation/ProjectInspector.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

std::string ProjectInspector::ExplainOption(const char* set, const char* section,
                                            const char* property) {
  CProjectModel* model = Model();
  CXmlNode* node = model == nullptr ? nullptr : model->GetCurrentNode();
  if (node == nullptr) return {};
  const std::string setName = OrEmpty(set).empty() ? node->GetName() : OrEmpty(set);
  CXmlNode explanation;
  explanation.SetName("Option");
  explanation.AddAttr("Node", OrEmpty(node->GetAttrValue("Header")));
  explanation.AddAttr("Value", static_cast<CProjectManager*>(manager_.Get())
                                   ->GetPropertyValue(setName.c_str(), section, property));
  const std::string current = model->Publishing().GetCurrentConfigName();
  std::vector<CXmlNode*> chain;
  model->Publishing().CollectOptionChain(chain, node);
  for (const CXmlNode* level : chain) {
    const CXmlNode* options = level->FindChild("Options");
    for (int i = 0; options != nullptr && i < options->GetChildCount(); ++i) {
      const CXmlNode* config = options->GetChild(i);
      CXmlNode* found = nullptr;
      FindChildNode(setName.c_str(), "Header", config, found);
      CXmlNode* inSection = nullptr;
      FindChildNode(section, "Header", found, inSection);
      CXmlNode* value = nullptr;
      FindChildNode(property, "Header", inSection, value);
      if (value == nullptr) continue;
      const std::uint32_t flags = model->Types().FlagsOf(*level);
      CXmlNode& from = *explanation.AddChild("From");
      from.AddAttr("Kind", (flags & kTypeApplication) != 0 ? "application"
                           : (flags & kTypeProject) != 0   ? "project"
                           : (flags & kTypeIsLeaf) != 0    ? "node"
                                                           : "group");
      from.AddAttr("Header", OrEmpty(level->GetAttrValue("Header")));
      const std::string configName = OrEmpty(config->GetAttrValue("Header"));
      from.AddAttr("Config", configName);
      const bool counts =
          EqualNoCase(configName, current) ||
          (EqualNoCase(OrEmpty(section), "General") && EqualNoCase(configName, kStandardConfig));
      from.AddAttr("Current", counts ? "Yes" : "No");
      from.AddAttr("Text", value->ToString(g_xmlDisplayOptions));
    }
  }
  return explanation.ToString(g_xmlDisplayOptions);
}

}  // namespace tarn
