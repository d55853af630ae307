#include "components/options/DefinitionList.h"

#include <tarn/commands.h>

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::options {

namespace {

// Host commands for a changed option: outputs remain valid, or have to be rebuilt.

const char* YesNo(bool value) {
  return value ? "Yes" : "No";
}

void SetUnlessEmpty(CXmlNode& node, const char* name, const std::string& value) {
  if (!value.empty()) node.SetAttrValue(name, value);
}

void AddProperty(CXmlNode& section, const PropertyDefinition& property, PropertyState state) {
  CXmlNode& node = *section.AddChild("Property");
  node.SetAttrValue("Header", property.name);
  node.SetAttrValue("Type", NameOfType(property.type));
  node.SetAttrValue("Label", property.label.empty() ? property.name : property.label);
  node.SetAttrValue("Default", property.RawDefault());
  SetUnlessEmpty(node, "Help", property.help);
  SetUnlessEmpty(node, "Min", property.minimum);
  SetUnlessEmpty(node, "Max", property.maximum);
  node.SetAttrValue("Removable", YesNo(property.removable));
  node.SetAttrValue("KeepsOutputs", YesNo(property.keepsOutputs));
  node.SetAttrValue(
      "Command",
      ToDecimal(property.keepsOutputs ? TARN_CMD_APPLY_OPTION : TARN_CMD_APPLY_OPTION_AND_REBUILD));
  node.SetAttrValue("Shown", YesNo(state.shown));
  SetUnlessEmpty(node, "ShownWhen", property.shown.ToText());
  node.SetAttrValue("Enabled", YesNo(state.enabled));
  SetUnlessEmpty(node, "EnabledWhen", property.enabled.ToText());
  node.SetAttrValue("File", property.origin);
  for (const Choice& choice : property.choices) {
    CXmlNode& row = *node.AddChild("Choice");
    row.SetAttrValue("Value", choice.value);
    row.SetAttrValue("Label", choice.label);
  }
}

CXmlNode& AddSet(CXmlNode& root, const SetDefinition& set) {
  CXmlNode& node = *root.AddChild("Set");
  node.SetAttrValue("Header", set.name);
  node.SetAttrValue("Label", set.label.empty() ? set.name : set.label);
  SetUnlessEmpty(node, "Help", set.help);
  return node;
}

CXmlNode* FindByHeader(const CXmlNode& parent, const std::string& name) {
  for (CXmlNode* child : parent.GetChildren()) {
    if (EqualNoCase(OrEmpty(child->GetAttrValue("Header")), name)) return child;
  }
  return nullptr;
}

// Adds definitions that the set does not have yet, so that its own take precedence.
void AddContents(CXmlNode& setNode, const std::string& setName, const SetDefinition& from,
                 const PropertyStateOf& stateOf) {
  for (const auto& section : from.sections) {
    CXmlNode* node = FindByHeader(setNode, section->name);
    if (node == nullptr) {
      node = setNode.AddChild("Section");
      node->SetAttrValue("Header", section->name);
      node->SetAttrValue("Label", section->name);
    }
    if (!section->label.empty()) node->SetAttrValue("Label", section->label);
    SetUnlessEmpty(*node, "Help", section->help);
    for (const auto& property : section->properties) {
      if (FindByHeader(*node, property->name) != nullptr) continue;
      AddProperty(*node, *property, stateOf(setName, section->name, *property));
    }
  }
}

const SetDefinition* FindSet(const Definitions& definitions, std::string_view name) {
  for (const auto& set : definitions.Sets()) {
    if (EqualNoCase(set->name, name)) return set.get();
  }
  return nullptr;
}

}  // namespace

std::string ListDefinitions(const Definitions& definitions, std::string_view set,
                            const PropertyStateOf& stateOf) {
  CXmlNode root;
  root.SetName("OptionSets");
  if (set.empty()) {
    for (const auto& each : definitions.Sets()) {
      AddContents(AddSet(root, *each), each->name, *each, stateOf);
    }
    return root.ToString(g_xmlDisplayOptions);
  }
  SetDefinition unknown;
  unknown.name = set;
  const SetDefinition* own = FindSet(definitions, set);
  if (own == nullptr) own = &unknown;
  CXmlNode& node = AddSet(root, *own);
  AddContents(node, own->name, *own, stateOf);
  if (const SetDefinition* every = FindSet(definitions, kEverySet);
      every != nullptr && every != own) {
    AddContents(node, own->name, *every, stateOf);
  }
  return root.ToString(g_xmlDisplayOptions);
}

}  // namespace tarn::options
