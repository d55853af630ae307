#include "components/options/Definitions.h"

#include "platform/text/Text.h"

namespace tarn::options {

namespace {

constexpr std::string_view kTypeNames[] = {"text", "number", "yesno", "choice",
                                           "file", "folder", "paths", "list"};

template <class Part>
Part* FindPart(const std::vector<std::unique_ptr<Part>>& parts, std::string_view name) {
  for (const auto& part : parts) {
    if (EqualNoCase(part->name, name)) return part.get();
  }
  return nullptr;
}

template <class Part>
Part& FindOrAdd(std::vector<std::unique_ptr<Part>>& parts, std::string_view name) {
  if (Part* known = FindPart(parts, name)) return *known;
  parts.push_back(std::make_unique<Part>());
  parts.back()->name = name;
  return *parts.back();
}

}  // namespace

std::string_view NameOfType(ValueType type) {
  return kTypeNames[static_cast<std::size_t>(type)];
}

bool TypeFromName(std::string_view name, ValueType& type) {
  for (std::size_t i = 0; i < std::size(kTypeNames); ++i) {
    if (!EqualNoCase(kTypeNames[i], name)) continue;
    type = static_cast<ValueType>(i);
    return true;
  }
  return false;
}

std::string Condition::ToText() const {
  if (IsEmpty()) return {};
  std::string text = set.empty() ? std::string() : set + ".";
  text += section + "." + property + (negated ? "!=" : "=");
  for (std::size_t i = 0; i < values.size(); ++i) text += (i > 0 ? "," : "") + values[i];
  return text;
}

bool ParseCondition(std::string_view text, Condition& condition) {
  const std::size_t equal = text.find('=');
  if (equal == std::string_view::npos || equal == 0) return false;
  Condition read;
  read.negated = text[equal - 1] == '!';
  const std::vector<std::string_view> names =
      Split(Trim(text.substr(0, read.negated ? equal - 1 : equal)), '.');
  if (names.size() < 2 || names.size() > 3 || names.back().empty()) return false;
  if (names.size() == 3) read.set = names[0];
  read.section = names[names.size() - 2];
  read.property = names.back();
  for (const std::string_view value : Split(text.substr(equal + 1), ',')) {
    read.values.emplace_back(Trim(value));
  }
  if (read.values.empty()) read.values.emplace_back();
  condition = std::move(read);
  return true;
}

std::string PropertyDefinition::RawDefault() const {
  if (conditionalDefaults.empty()) return defaultText;
  // Nests the macros from last to first, each as the default case of the one before it.
  std::string text = defaultText;
  for (std::size_t i = conditionalDefaults.size(); i-- > 0;) {
    const ConditionalDefault& chosen = conditionalDefaults[i];
    std::string macro = "$(";
    if (!chosen.when.set.empty()) macro += chosen.when.set + ".";
    macro += chosen.when.section + "." + chosen.when.property + "?";
    for (const std::string& value : chosen.when.values) macro += value + "=" + chosen.value + ";";
    text = macro + "*=" + text + ")";
  }
  return text;
}

SetDefinition& Definitions::Set(std::string_view name) {
  return FindOrAdd(sets_, name);
}

SectionDefinition& Definitions::Section(SetDefinition& set, std::string_view name) {
  return FindOrAdd(set.sections, name);
}

PropertyDefinition& Definitions::Property(SectionDefinition& section, std::string_view name) {
  const std::size_t count = section.properties.size();
  PropertyDefinition& property = FindOrAdd(section.properties, name);
  if (section.properties.size() == count) return property;
  const SetDefinition* every = FindPart(sets_, kEverySet);
  const SectionDefinition* from = every ? FindPart(every->sections, section.name) : nullptr;
  const PropertyDefinition* model = from ? FindPart(from->properties, name) : nullptr;
  if (model != nullptr && model != &property) property = *model;
  property.name = name;
  property.section = section.name;
  return property;
}

void Definitions::Clear() {
  sets_.clear();
  Index();
}

void Definitions::Index() {
  everySet_ = keys_.AddSet(kEverySet);
  entries_.assign(1, {});
  entryOfKey_.clear();
  definedKeys_.clear();
  defaults_.clear();
  for (const auto& set : sets_) {
    for (const auto& section : set->sections) {
      for (const auto& property : section->properties) {
        const KeyId key = keys_.AddKey(set->name, section->name, property->name);
        if (key >= entryOfKey_.size()) entryOfKey_.resize(key + 1);
        entryOfKey_[key] = static_cast<std::uint32_t>(entries_.size());
        entries_.push_back({property.get(), property->RawDefault()});
        definedKeys_.push_back(key);
      }
    }
  }
}

const Definitions::Entry* Definitions::FindEntry(SetId set, PropertyId property) const {
  for (const SetId candidate : {set, everySet_}) {
    const KeyId key = keys_.FindKey(candidate, property);
    if (key < entryOfKey_.size() && entryOfKey_[key] != 0) return &entries_[entryOfKey_[key]];
  }
  return nullptr;
}

const PropertyDefinition* Definitions::Find(SetId set, PropertyId property) const {
  const Entry* entry = FindEntry(set, property);
  return entry == nullptr ? nullptr : entry->definition;
}

const std::string* Definitions::FindDefault(SetId set, PropertyId property) const {
  const Entry* entry = FindEntry(set, property);
  return entry == nullptr ? nullptr : &entry->rawDefault;
}

const Definitions::Defaults& Definitions::DefaultsFor(SetId set) {
  const auto known = defaults_.find(set);
  if (known != defaults_.end()) return known->second;
  Defaults made;
  for (const SetId from : {set, everySet_}) {
    for (const KeyId key : definedKeys_) {
      if (keys_.Get(key).set != from) continue;
      const PropertyId property = keys_.Get(key).property;
      // Display settings of types are irrelevant to readers of a node's values.
      if (EqualNoCase(keys_.SectionName(property), "Internal")) continue;
      const std::string* text = FindDefault(set, property);
      if (!text->empty()) made.values.Set(keys_.AddKey(set, property), *text);
    }
  }
  AppendElements(made.ready, keys_, made.values.All(), 'd');
  return defaults_.emplace(set, std::move(made)).first->second;
}

const ValueMap& Definitions::DefaultsOf(SetId set) {
  return DefaultsFor(set).values;
}

const std::string& Definitions::SerializedDefaultsOf(SetId set) {
  return DefaultsFor(set).ready;
}

}  // namespace tarn::options
