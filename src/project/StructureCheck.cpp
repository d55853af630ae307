#include "project/StructureCheck.h"

#include <set>
#include <utility>

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr std::string_view kOptionLevels[] = {"Config", "Set", "Section", "Property"};
constexpr int kPropertyLevel = 3;

template <class OnElement>
void ForEachElement(const CXmlNode& node, OnElement&& onElement) {
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (child.GetType() == XmlElement) onElement(child);
  }
}

// Returns a description such as: <C> "main.c"
std::string Describe(const CXmlNode& node) {
  const char* header = node.GetAttrValue("Header");
  const std::string tag = "<" + node.GetName() + ">";
  return header == nullptr ? tag : tag + " \"" + header + "\"";
}

// Returns the level below Options at which elements of this name belong, or -1.
int LevelOf(std::string_view name) {
  for (int level = 0; level <= kPropertyLevel; ++level) {
    if (kOptionLevels[level] == name) return level;
  }
  return -1;
}

}  // namespace

void StructureCheck::CheckFile(const CXmlNode& root, const std::vector<std::string>& outerFiles) {
  CheckChosenConfig(root);
  CheckReferences(root, outerFiles);
  CheckNode(root, nullptr, true);
}

// If the active configuration is unknown, the application would be built without any options, which
// is never intended. A configuration that is not listed but has options is valid; an application
// that lists none may use any.
void StructureCheck::CheckChosenConfig(const CXmlNode& root) {
  const std::string config = OrEmpty(root.GetAttrValue("Config"));
  const bool isChosen = (types_.FlagsOf(root) & kTypeApplication) != 0 && !config.empty();
  if (!isChosen || EqualNoCase(config, kStandardConfig)) return;
  bool isListing = false;
  bool isKnown = false;
  ForEachElement(root, [&](const CXmlNode& child) {
    const bool isList = child.NameView() == "Configs";
    isListing = isListing || isList;
    if (!isList && child.NameView() != "Options") return;
    ForEachElement(child, [&](const CXmlNode& each) {
      isKnown = isKnown || EqualNoCase(OrEmpty(each.GetAttrValue("Header")), config);
    });
  });
  if (isListing && !isKnown) {
    Report(root, "names the configuration \"" + config + "\", which it does not have", true);
  }
}

bool StructureCheck::HasOwnFile(const CXmlNode& node) const {
  return (types_.FlagsOf(node) & kTypeExtern) != 0 && !OrEmpty(node.GetAttrValue("Extern")).empty();
}

bool StructureCheck::IsNodeAmong(const CXmlNode& holder, const CXmlNode& node) const {
  if (!IsKnown(node)) return false;
  // Dependencies that a tool reported are named like a type but have no path.
  const bool mayBeReported = holder.NameView() == "Dependencies";
  return !mayBeReported || (types_.FlagsOf(node) & kTypePath) == 0 || node.GetAttr("Path");
}

void StructureCheck::Report(const CXmlNode& element, const std::string& where, bool isKept) {
  collector_.Add(element, Describe(element) + " " + where, isKept);
}

void StructureCheck::CheckReferences(const CXmlNode& root,
                                     const std::vector<std::string>& outerFiles) {
  std::set<std::string> seen;
  for (const std::string& file : outerFiles) seen.insert(resolve_(file));
  ForEachElement(root, [&](const CXmlNode& child) {
    if (!HasOwnFile(child)) return;
    if (!seen.insert(resolve_(child.GetAttrValue("Extern"))).second) {
      Report(child, "names a file that has already been read", true);
    }
    bool hasContent = false;
    ForEachElement(child, [&](const CXmlNode& part) {
      if (!std::exchange(hasContent, true)) {
        Report(part, "is content of " + Describe(child) + ", which is read from its own file",
               false);
      }
    });
  });
}

void StructureCheck::CheckNode(const CXmlNode& node, const CXmlNode* leaf, bool isFileRoot) {
  if (leaf == nullptr && (types_.FlagsOf(node) & kTypeIsLeaf) != 0) leaf = &node;
  bool hasOptions = false;
  bool hasConfigs = false;
  ForEachElement(node, [&](const CXmlNode& child) {
    const std::string_view name = child.NameView();
    if (name == "Options") {
      if (std::exchange(hasOptions, true)) {
        Report(child, "is a duplicate in its node; only the first one is read", false);
      }
      CheckOptions(child, 0);
    } else if (name == "Configs") {
      if (std::exchange(hasConfigs, true)) {
        Report(child, "is a duplicate in its node; only the first one is read", false);
      }
      CheckConfigs(child);
    } else if (!IsContentNode(child)) {
      CheckData(child, child, false);
    } else {
      if (leaf != nullptr && IsKnown(child)) {
        Report(child, "is in " + Describe(*leaf) + ", which can't contain nodes", true);
      }
      if (!isFileRoot || !HasOwnFile(child)) CheckNode(child, leaf, false);
    }
  });
}

void StructureCheck::CheckOptions(const CXmlNode& parent, int level) {
  ForEachElement(parent, [&](const CXmlNode& child) {
    const int usual = LevelOf(child.NameView());
    // Below property level, a name denotes a node only if it has a file.
    if (IsKnown(child) && (level <= kPropertyLevel || child.GetAttr("Path"))) {
      return Report(child, "is in <Options>, where no node is read", true);
    }
    if (level <= kPropertyLevel && usual >= 0 && usual != level) {
      return Report(child, "is at a wrong level of <Options>", true);
    }
    if (level < kPropertyLevel && child.GetAttr("Header") == nullptr) {
      return Report(child, "has no attribute Header, so it is not read", true);
    }
    CheckOptions(child, level + 1);
  });
}

void StructureCheck::CheckConfigs(const CXmlNode& configs) {
  ForEachElement(configs, [&](const CXmlNode& child) {
    if (child.NameView() == "Config" && child.GetAttr("Header") == nullptr) {
      Report(child, "has no attribute Header, so it is not read", true);
    }
  });
  CheckData(configs, configs, true);
}

void StructureCheck::CheckData(const CXmlNode& holder, const CXmlNode& parent, bool isKept) {
  ForEachElement(parent, [&](const CXmlNode& child) {
    if (IsNodeAmong(holder, child)) {
      return Report(child, "is in <" + holder.GetName() + ">, where no node is read", isKept);
    }
    CheckData(holder, child, isKept);
  });
}

}  // namespace tarn
