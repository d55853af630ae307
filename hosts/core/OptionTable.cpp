#include "hosts/core/OptionTable.h"

#include <algorithm>
#include <cstdlib>

#include "components/values/ValuesXml.h"
#include "hosts/core/LogEntry.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

// Name that represents all sets in the definitions.
constexpr const char* kEverySet = "*";

bool IsOn(const CXmlNode& node, const char* name) {
  return !EqualNoCase(GetAttribute(&node, name), "No");
}

OptionDefinition ReadProperty(const std::string& set, const CXmlNode& section,
                              const CXmlNode& node) {
  OptionDefinition option;
  option.set = set;
  option.section = GetAttribute(&section, "Header");
  option.sectionLabel = GetAttribute(&section, "Label");
  option.name = GetAttribute(&node, "Header");
  option.type = GetAttribute(&node, "Type");
  option.label = GetAttribute(&node, "Label");
  option.help = GetAttribute(&node, "Help");
  option.defaultValue = GetAttribute(&node, "Default");
  option.minimum = GetAttribute(&node, "Min");
  option.maximum = GetAttribute(&node, "Max");
  option.file = GetAttribute(&node, "File");
  option.command = static_cast<std::uint32_t>(std::atoi(GetAttribute(&node, "Command").c_str()));
  option.removable = IsOn(node, "Removable");
  option.shown = IsOn(node, "Shown");
  option.enabled = IsOn(node, "Enabled");
  for (const CXmlNode* choice : node.GetChildren()) {
    if (choice->NameView() != "Choice") continue;
    option.choices.emplace_back(GetAttribute(choice, "Value"), GetAttribute(choice, "Label"));
  }
  return option;
}

bool IsSame(const OptionDefinition& option, const std::string& section, const std::string& name) {
  return EqualNoCase(option.section, section) && EqualNoCase(option.name, name);
}

}  // namespace

bool ParseOptionKey(const std::string& text, OptionKey& key) {
  const std::vector<std::string_view> parts = Split(text, '.');
  const bool hasEmptyPart =
      std::any_of(parts.begin(), parts.end(), [](std::string_view part) { return part.empty(); });
  if (parts.size() < 2 || parts.size() > 3 || hasEmptyPart) return false;
  key.set = parts.size() == 3 ? std::string(parts[0]) : std::string();
  key.section = parts[parts.size() - 2];
  key.name = parts[parts.size() - 1];
  return true;
}

std::vector<StoredValue> ReadStoredValues(const std::string& set, const std::string& explanation) {
  std::vector<StoredValue> stored;
  const auto answer = ParseXml(explanation);
  if (answer == nullptr) return stored;
  for (const CXmlNode* from : answer->GetChildren()) {
    if (from->NameView() != "From") continue;
    const auto element = ParseXml(GetAttribute(from, "Text"));
    stored.push_back({set, GetAttribute(from, "Kind"), GetAttribute(from, "Header"),
                      GetAttribute(from, "Config"), Unescape(GetAttribute(element.get(), "Value")),
                      GetAttribute(from, "Current") == "Yes"});
  }
  return stored;
}

OptionTable::OptionTable(const std::string& xml) {
  const auto root = ParseXml(xml);
  if (root == nullptr) return;
  for (const CXmlNode* set : root->GetChildren()) {
    setsDefined_.push_back({GetAttribute(set, "Header"), GetAttribute(set, "Label")});
    for (const CXmlNode* section : set->GetChildren()) {
      for (const CXmlNode* property : section->GetChildren()) {
        if (property->NameView() != "Property") continue;
        options_.push_back(ReadProperty(setsDefined_.back().name, *section, *property));
      }
    }
  }
}

std::vector<OptionDefinition> OptionTable::GetOf(const std::string& set) const {
  std::vector<OptionDefinition> found;
  for (const char* source : {set.c_str(), kEverySet}) {
    for (const OptionDefinition& option : options_) {
      if (!EqualNoCase(option.set, source)) continue;
      const bool isKnown = std::any_of(found.begin(), found.end(), [&](const auto& each) {
        return IsSame(each, option.section, option.name);
      });
      if (isKnown) continue;
      // Inserted after the last option of its section, so that sections stay together.
      const auto last = std::find_if(found.rbegin(), found.rend(), [&](const auto& each) {
        return EqualNoCase(each.section, option.section);
      });
      const auto place = last == found.rend() ? found.end() : last.base();
      found.insert(place, option)->set = set;
    }
  }
  return found;
}

std::optional<OptionDefinition> OptionTable::Find(const OptionKey& key,
                                                  const std::vector<std::string>& sets) const {
  for (const std::string& set : sets) {
    for (const OptionDefinition& option : GetOf(set)) {
      if (IsSame(option, key.section, key.name)) return option;
    }
  }
  return std::nullopt;
}

bool OptionTable::Names(const std::string& set, const std::string& section,
                        const std::string& name) const {
  return std::any_of(options_.begin(), options_.end(), [&](const OptionDefinition& option) {
    return EqualNoCase(option.set, set) && IsSame(option, section, name);
  });
}

std::vector<std::string> OptionTable::GetNames(const std::vector<std::string>& sets) const {
  std::vector<std::string> names;
  for (const std::string& set : sets) {
    for (const OptionDefinition& option : GetOf(set)) {
      const std::string name = option.GetKey();
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
  }
  for (const OptionDefinition& option : options_) {
    if (option.set != kEverySet) names.push_back(option.set + "." + option.GetKey());
  }
  return names;
}

}  // namespace tarn::host
