// Copying the stored options of one configuration to another.

#include "project/NodeOptions.h"

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Names of both configurations, as written in stored options.
struct CopiedNames {
  std::string from;  // empty if nothing is copied
  std::string to;
  bool skipsGeneral = false;  // values of section General apply to all configurations
};

bool HasHeader(const CXmlNode& node, std::string_view header) {
  const char* own = node.GetAttrValue("Header");
  return node.GetType() == XmlElement && own != nullptr && EqualNoCase(own, header);
}

// Removes section General, and each set that becomes empty.
void RemoveGeneral(CXmlNode& config) {
  for (int i = config.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode& set = *config.GetChild(i);
    for (int k = set.GetChildCount() - 1; k >= 0; --k) {
      if (HasHeader(*set.GetChild(k), "General")) set.RemoveChild(set.GetChild(k));
    }
    if (set.GetChildCount() == 0) config.RemoveChild(&set);
  }
}

bool HasConfig(const CXmlNode& options, const std::string& name) {
  for (const CXmlNode* child : options.GetChildren()) {
    if (HasHeader(*child, name)) return true;
  }
  return false;
}

// Returns true if the stored options changed.
bool CopyStored(CXmlNode& options, const CopiedNames& names, bool replaces) {
  if (!replaces && HasConfig(options, names.to)) return false;
  bool isChanged = false;
  for (int i = options.GetChildCount() - 1; i >= 0; --i) {
    if (HasHeader(*options.GetChild(i), names.to)) {
      isChanged = options.RemoveChild(options.GetChild(i)) || isChanged;
    }
  }
  const int count = names.from.empty() ? 0 : options.GetChildCount();
  for (int i = 0; i < count; ++i) {
    if (!HasHeader(*options.GetChild(i), names.from)) continue;
    auto copy = CXmlNode::CreateNode("Config");
    copy->CopyFrom(*options.GetChild(i));
    copy->SetAttrValue("Header", names.to);
    if (names.skipsGeneral) RemoveGeneral(*copy);
    if (copy->GetChildCount() == 0) continue;
    options.AppendChild(std::move(copy));
    isChanged = true;
  }
  return isChanged;
}

// Copies in the subtree, except in applications below `root`, which have their own configurations.
// Returns true if stored options changed.
bool CopyStoredBelow(const NodeTypes& types, CXmlNode& node, const CXmlNode* root,
                     const CopiedNames& names, bool replaces) {
  CXmlNode* const options = node.FindChild("Options");
  bool isChanged = options != nullptr && CopyStored(*options, names, replaces);
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode& child = *node.GetChild(i);
    const bool isOther = &node == root && (types.FlagsOf(child) & kTypeApplication) != 0;
    if (!IsContentNode(child) || isOther) continue;
    isChanged = CopyStoredBelow(types, child, root, names, replaces) || isChanged;
  }
  return isChanged;
}

// Returns a configuration name in the form in which the property manager stores it.
std::string StoredName(CPropertyManagerDriver& propertyManager, const std::string& name) {
  if (name.empty()) return {};
  CXmlNode config;
  CXmlParseInfo info;
  config.Load(propertyManager.GetConfigText(name, "", "", ""), info);
  const char* header = config.GetAttrValue("Header");
  return config.NameView() == "Config" && header != nullptr ? header : name;
}

}  // namespace

std::int32_t NodeOptions::CopyConfiguration(const std::string& from, const std::string& to) {
  if (!services_.build.CanStartOperation() || state_.activeApplication == nullptr || to.empty() ||
      EqualNoCase(from, to) || EqualNoCase(to, publisher_.GetCurrentConfigName())) {
    return 0;
  }
  const CopiedNames names{StoredName(*services_.propertyManager, from),
                          StoredName(*services_.propertyManager, to),
                          EqualNoCase(from, kStandardConfig)};
  const bool isOwn = CopyStoredBelow(types_, *state_.activeApplication, nullptr, names, true);
  const bool isOutside =
      CopyStoredBelow(types_, *state_.projectRoot, state_.projectRoot.get(), names, false);
  if (!isOwn && !isOutside) return 1;
  state_.MarkModified();
  state_.ClearCachedTexts();
  // The cached values of a node include the stored options they were made from.
  derived_.ResetNodeCache(isOutside ? *state_.projectRoot : *state_.activeApplication, true);
  publisher_.PublishAll();
  return 1;
}

}  // namespace tarn
