#include "hosts/core/Damage.h"

#include <algorithm>
#include <array>

#include "hosts/core/LogEntry.h"
#include "hosts/core/ServerDrivers.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::array kChangingCommands = {
    kCmdApplyOption,
    kCmdInvalidateNode,
    kCmdAddFiles,
    kCmdNewItem,
    kCmdNewGroup,
    kCmdRebuildAll,
    kCmdBuildAll,
    kCmdCleanAll,
    kCmdRebuildNode,
    kCmdBuildNode,
    kCmdCleanNode,
    kCmdTranslateNode,
    kCmdBuildApplication,
    kCmdSetActiveApplication,
    kCmdSelectConfiguration,
    kCmdResetOption,
    kCmdResetNodeOptions,
    kCmdAddConfiguration,
    kCmdRemoveNode,
    kCmdPasteNode,
};

constexpr std::array<std::string_view, 8> kChangingMethods = {
    "ProjectSave", "ProjectBuild",      "UpdateCurNodeConfig", "AddExistingItem",
    "AddNewItem",  "SavePropertyValue", "ResetPropertyValue",  "RemoveItem",
};

}  // namespace

std::vector<DamageEntry> ParseDamage(const std::string& xml) {
  std::vector<DamageEntry> list;
  const auto root = ParseXml(xml);
  if (root == nullptr) return list;
  for (const CXmlNode* place : root->GetChildren()) {
    if (place->NameView() != "Place") continue;
    list.push_back({AttributeOf(place, "File"), ParseDecimal(place->GetAttrValue("Line")),
                    AttributeOf(place, "Text"), AttributeOf(place, "Unread") == "Yes"});
  }
  return list;
}

bool HasUnread(const std::vector<DamageEntry>& damage) {
  return std::any_of(damage.begin(), damage.end(),
                     [](const DamageEntry& each) { return each.isUnread; });
}

std::string DescribeDamage(const DamageEntry& entry, const std::string& file) {
  return file + ":" + (entry.line > 0 ? std::to_string(entry.line) + ":" : "") + " " + entry.text;
}

bool ChangesProject(std::uint32_t command) {
  if (command >= kCmdFirstTool && command <= kCmdLastTool) return true;
  return std::find(kChangingCommands.begin(), kChangingCommands.end(), command) !=
         kChangingCommands.end();
}

bool ChangesProject(std::string_view method, std::span<const Variant> arguments) {
  const auto isMethod = [method](std::string_view each) { return EqualNoCase(each, method); };
  if (isMethod("Command") || isMethod("PrologCommand")) {
    return !arguments.empty() && ChangesProject(static_cast<std::uint32_t>(arguments[0].AsLong()));
  }
  return std::any_of(kChangingMethods.begin(), kChangingMethods.end(), isMethod);
}

}  // namespace tarn::host
