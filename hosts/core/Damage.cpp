#include "hosts/core/Damage.h"

#include <tarn/commands.h>

#include <algorithm>
#include <array>

#include "hosts/core/LogEntry.h"
#include "hosts/core/ServerDrivers.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr std::array kChangingCommands = {
    TARN_CMD_APPLY_OPTION,
    TARN_CMD_APPLY_OPTION_AND_REBUILD,
    TARN_CMD_ADD_FILES,
    TARN_CMD_NEW_APPLICATION,
    TARN_CMD_NEW_GROUP,
    TARN_CMD_REBUILD_ALL,
    TARN_CMD_BUILD_ALL,
    TARN_CMD_CLEAN_ALL,
    TARN_CMD_REBUILD_NODE,
    TARN_CMD_BUILD_NODE,
    TARN_CMD_CLEAN_NODE,
    TARN_CMD_TRANSLATE_NODE,
    TARN_CMD_BUILD_APPLICATION,
    TARN_CMD_SET_ACTIVE_APPLICATION,
    TARN_CMD_SELECT_CONFIGURATION,
    TARN_CMD_RESET_OPTION,
    TARN_CMD_RESET_NODE_OPTIONS,
    TARN_CMD_ADD_CONFIGURATION,
    TARN_CMD_REMOVE_NODE,
    TARN_CMD_PASTE,
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
    list.push_back({GetAttribute(place, "File"), ParseDecimal(place->GetAttrValue("Line")),
                    GetAttribute(place, "Text"), GetAttribute(place, "Unread") == "Yes"});
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
  if (command >= TARN_CMD_FIRST_TOOL && command <= TARN_CMD_LAST_TOOL) return true;
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
