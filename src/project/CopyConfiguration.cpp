// Copying the options that are stored for one configuration to another.

#include "platform/text/Text.h"
#include "project/ProjectModel.h"

namespace tarn {

namespace {

// The names of both configurations as stored options write them.
struct CopiedNames {
  std::string from;  // empty: nothing is copied
  std::string to;
  bool skipsGeneral = false;  // these values belong to all configurations
};

bool HasHeader(const CXmlNode& node, std::string_view header) {
  const char* own = node.GetAttrValue("Header");
  return node.GetType() == XmlElement && own != nullptr && EqualNoCase(own, header);
}

// Takes section General out, and what is empty without it.
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

// True if the stored options changed.
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

// At the node and below it, except in applications below `root`: these have configurations of their
// own. True if stored options changed.
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

// The property manager writes names of configurations in a form of its own.
std::string StoredName(CPropertyManagerDriver& propertyManager, const std::string& name) {
  if (name.empty()) return {};
  CXmlNode config;
  CXmlParseInfo info;
  config.Load(propertyManager.GetConfigText(name, "", "", ""), info);
  const char* header = config.GetAttrValue("Header");
  return config.NameView() == "Config" && header != nullptr ? header : name;
}

}  // namespace

std::int32_t CProjectModel::CopyConfiguration(const std::string& from, const std::string& to) {
  if (!CanStartOperation() || activeApplication == nullptr || to.empty() || EqualNoCase(from, to) ||
      EqualNoCase(to, GetCurrentConfigName())) {
    return 0;
  }
  const CopiedNames names{StoredName(*propertyManager, from), StoredName(*propertyManager, to),
                          EqualNoCase(from, kStandardConfig)};
  const bool isOwn = CopyStoredBelow(types, *activeApplication, nullptr, names, true);
  const bool isOutside = CopyStoredBelow(types, *projectRoot, projectRoot.get(), names, false);
  if (!isOwn && !isOutside) return 1;
  NoteModified();
  ForgetKeptTexts();
  // What is cached of a node names the stored options that it was made from.
  ResetNodeCache(isOutside ? *projectRoot : *activeApplication, true);
  PublishAll();
  return 1;
}

}  // namespace tarn
