// Storing changed values from the property manager in the tree, and removing them again.

#include "project/NodeOptions.h"

#include <tarn/commands.h>

#include "patterns/Parser.h"
#include "platform/text/Text.h"
#include "project/MergeOptions.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr const char* kGeneralSection = "General";

// A parsed key of the form set.section.property.
struct OptionKey {
  std::string set;
  std::string section;
  std::string property;
};

// When storing, a key of two parts is section and property, and any other length is a property.
OptionKey KeyForStoring(const std::string& text) {
  const CParser parts(text, ".");
  switch (parts.GetCount()) {
    case 0:
      return {};
    case 2:
      return {"", parts.GetToken(0), parts.GetToken(1)};
    case 3:
      return {parts.GetToken(0), parts.GetToken(1), parts.GetToken(2)};
    default:
      return {"", "", parts.GetToken(0)};
  }
}

// When resetting, parts are read from the left; a single part is both set and section.
OptionKey KeyForResetting(const std::string& text) {
  const CParser parts(text, ".");
  OptionKey key;
  if (parts.GetCount() > 0) key.set = key.section = parts.GetToken(0);
  if (parts.GetCount() > 1) key.section = parts.GetToken(1);
  if (parts.GetCount() > 2) key.property = parts.GetToken(2);
  return key;
}

CXmlNode* ChildByHeader(const CXmlNode* parent, const std::string& header) {
  CXmlNode* found = nullptr;
  FindChildNode(header.c_str(), "Header", parent, found);
  return found;
}

bool HasNodes(const CXmlNode& node) {
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (child.GetType() == XmlElement && IsContentNode(child)) return true;
  }
  return false;
}

bool RemoveIfRemovable(CXmlNode& section, const CXmlNode* property) {
  if (property == nullptr || property->GetAttr("Removable") == nullptr) return false;
  return section.RemoveChild(property);
}

// Values of the section General are not specific to a configuration.
std::string ConfigOfSection(const std::string& section, const std::string& current) {
  return EqualNoCase(section, kGeneralSection) ? kStandardConfig : current;
}

}  // namespace

std::int32_t NodeOptions::StoreChangedProperty(const std::string& changedKey) {
  const std::string keyText =
      changedKey.empty() ? services_.propertyManager->GetChangedProperty() : changedKey;
  if (keyText.empty()) return 0;
  CXmlNode* node = state_.GetCurrentNode();
  if (node == nullptr) return 0;
  state_.MarkModified();
  OptionKey key = KeyForStoring(keyText);
  if (key.set.empty()) key.set = node->GetName();
  if (EqualNoCase(key.set, node->NameView()) && EqualNoCase(key.section, kGeneralSection) &&
      (EqualNoCase(key.property, "Type") || EqualNoCase(key.property, "Header"))) {
    return ChangeNodeIdentity(
        *node, key.property,
        services_.propertyManager->GetPropertyValue(key.set, key.section, key.property));
  }

  auto changed = CXmlNode::CreateNode("Options");
  const std::string config = ConfigOfSection(key.section, publisher_.GetCurrentConfigName());
  auto value = std::make_unique<CXmlNode>();
  value->Load(services_.propertyManager->GetConfigText(config, key.set, key.section, key.property),
              g_xmlParseInfo);
  changed->AppendChild(std::move(value));
  CXmlNode* old = node->FindChild("Options");
  if (old != nullptr) changed = MergeOptions(*old, *changed);
  // At the same position: a damaged file may have two, of which the first is the effective one.
  node->InsertChildBefore(std::move(changed), old);
  if (old != nullptr) node->RemoveChild(old);
  state_.ClearCachedTexts();

  if (state_.creatingProject == 0 && state_.activeApplication != nullptr &&
      (types_.FlagsOf(*state_.activeApplication) & kTypeAutoDebug) != 0) {
    if (state_.isDefaultProject != 0) {
      editor_.ClearDefaultApplicationItems();
    } else {
      host_.PostHostCommand(TARN_CMD_AUTO_DEBUG);
    }
  }
  return 1;
}

// Returns true if `typeName` is a valid element name that is read back as a node, and the node
// could still be where it is.
bool NodeOptions::CanBecome(const CXmlNode& node, const std::string& typeName) const {
  CXmlNode probe;
  probe.SetName(typeName);
  constexpr std::uint32_t kPlace = kTypeProject | kTypeApplication | kTypeExtern;
  // Its children would be misplaced.
  if ((types_.FlagsOf(probe) & kTypeIsLeaf) != 0 && HasNodes(node)) return false;
  return !typeName.empty() && IsContentNode(probe) &&
         typeName.find_first_of(" \t\r\n<>/=\"'&!?#\\") == std::string::npos &&
         (types_.FlagsOf(node) & kPlace) == (types_.FlagsOf(probe) & kPlace);
}

// Changing a node's type or label invalidates everything derived from it.
std::int32_t NodeOptions::ChangeNodeIdentity(CXmlNode& node, const std::string& property,
                                             const std::string& value) {
  const bool isType = EqualNoCase(property, "Type");
  if (isType && !CanBecome(node, value)) return 0;
  const TreeUpdate update(views_);
  if (isType) {
    node.SetName(value);
  } else {
    const char* active = state_.projectRoot->GetAttrValue("ActiveApp");
    const char* oldHeader = node.GetAttrValue("Header");
    const bool namesActive = (types_.FlagsOf(node) & kTypeApplication) != 0 &&
                             node.GetParent() == state_.projectRoot.get() && active != nullptr &&
                             oldHeader != nullptr && EqualNoCase(active, oldHeader);
    if (namesActive) state_.projectRoot->SetAttrValue("ActiveApp", value);
    node.SetAttrValue("Header", value);
  }
  derived_.StripForSave(node, true);
  derived_.MakeActivePathAbsolute();
  return 1;
}

std::int32_t NodeOptions::ResetStoredProperty(const std::string& changedKey) {
  if (!services_.build.CanStartOperation()) return 0;
  const std::string keyText =
      changedKey.empty() ? services_.propertyManager->GetChangedProperty() : changedKey;
  CXmlNode* node = state_.GetCurrentNode();
  if (node == nullptr) return 0;
  const OptionKey key = KeyForResetting(keyText);
  CXmlNode* options = node->FindChild("Options");
  CXmlNode* config =
      ChildByHeader(options, ConfigOfSection(key.section, publisher_.GetCurrentConfigName()));
  CXmlNode* set = ChildByHeader(config, key.set);
  CXmlNode* section = ChildByHeader(set, key.section);
  if (section == nullptr) return 1;
  if (!key.property.empty()) {
    if (RemoveIfRemovable(*section, ChildByHeader(section, key.property))) state_.MarkModified();
  } else {
    for (int i = section->GetChildCount() - 1; i >= 0; --i) {
      if (RemoveIfRemovable(*section, section->GetChild(i))) state_.MarkModified();
    }
  }
  // Removes ancestors that became empty, except for the topmost.
  if (section->GetChildCount() == 0) set->RemoveChild(section);
  if (set->GetChildCount() == 0) config->RemoveChild(set);
  if (config->GetChildCount() == 0) options->RemoveChild(config);
  state_.ClearCachedTexts();
  return 1;
}

std::int32_t NodeOptions::ResetNodeOptions(CXmlNode* node) {
  if (!services_.build.CanStartOperation()) return 0;
  if (node == nullptr) node = state_.GetCurrentNode();
  if (node == nullptr) return 0;
  state_.MarkModified();
  if (CXmlNode* options = node->FindChild("Options")) node->RemoveChild(options);
  services_.propertyManager->BeginUpdate();
  publisher_.RenewPropState(*node);
  {
    const TreeUpdate update(views_);
    derived_.ResetNodeCache(*node, false);
    // The property manager still has the values that were just removed.
    const std::uint64_t epoch = state_.treeGeneration;
    publisher_.SetCurrentNode(node);
    if (state_.treeGeneration == epoch) publisher_.RestorePropState(*node);
    services_.propertyManager->EndUpdate();
  }
  return 1;
}

}  // namespace tarn
