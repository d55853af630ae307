#include "components/options/NodeValues.h"

#include <algorithm>

#include "platform/text/Text.h"

namespace tarn::options {

namespace {

constexpr std::size_t kValuesTexts = 8;
constexpr std::size_t kOptionsTexts = 32;
constexpr std::string_view kStandard = "Standard";

constexpr std::uint64_t IdOf(SetId set, PropertyId property, std::uint32_t layer) {
  return (static_cast<std::uint64_t>(set) << 34) + (static_cast<std::uint64_t>(property) << 2) +
         layer + 1;
}

}  // namespace

NodeValues::NodeValues(KeyTable& keyTable, Definitions& definitionTable)
    : keys(keyTable),
      definitions(definitionTable),
      nothing(std::make_shared<Snapshot>()),
      valuesCache(kValuesTexts),
      optionsCache(kOptionsTexts) {
  below = nothing;
}

void NodeValues::NewLevel(std::shared_ptr<const Snapshot> inherited) {
  hasPending = false;
  ownSet = 0;
  ++level;
  ownKeys.clear();
  applied.clear();
  appliedOptions.clear();
  below = std::move(inherited);
}

void NodeValues::Clear() {
  NewLevel(nothing);
}

void NodeValues::SetConfig(std::string_view name) {
  config = name.empty() ? kStandard : name;
  configIsSet = true;
}

bool NodeValues::ReadText(std::string_view text) {
  if (!HasRoot(text, "Values")) return false;
  if (!hasPending && ownKeys.empty() && below == nothing && ownSet == 0) {
    pending = text;
    hasPending = true;
    return true;
  }
  Settle();
  Merge(*valuesCache.Get(text, [&] { return ParseValues(text, keys); }));
  return true;
}

void NodeValues::Settle() {
  if (!hasPending) return;
  hasPending = false;
  const auto parsed = valuesCache.Get(pending, [&] { return ParseValues(pending, keys); });
  ownSet = parsed->ownSet;
  below = parsed->below;
  applied = parsed->applied;
  for (const auto& [key, value] : parsed->own.All()) PutOwn(key, value, false);
  if (!configIsSet && !parsed->config.empty()) config = parsed->config;
}

void NodeValues::Merge(const ParsedValues& parsed) {
  auto merged = std::make_shared<Snapshot>(*below);
  for (const SetId set : parsed.below->sets) {
    if (!merged->HasSet(set)) merged->sets.push_back(set);
  }
  for (const SetId set : parsed.below->defaultSets) {
    if (!merged->HasDefaultsOf(set)) merged->defaultSets.push_back(set);
  }
  for (const auto& [key, value] : parsed.below->values.All()) merged->values.Set(key, value);
  for (const auto& [key, value] : parsed.below->defaults.All()) merged->defaults.Set(key, value);
  merged->readyValues.clear();
  merged->readyDefaults.clear();
  AppendElements(merged->readyValues, keys, merged->values.All(), 'i');
  AppendElements(merged->readyDefaults, keys, merged->defaults.All(), 'd');
  below = std::move(merged);
  if (ownSet == 0) ownSet = parsed.ownSet;
  for (const auto& [key, value] : parsed.own.All()) PutOwn(key, value, false);
}

void NodeValues::EnterSet(std::string_view name) {
  Settle();
  if (ownSet == 0 && !name.empty()) ownSet = keys.AddSet(name);
}

const std::string& NodeValues::OwnSet() {
  Settle();
  return keys.SetName(ownSet);
}

std::string NodeValues::Place() {
  Settle();
  std::string place = keys.SetName(ownSet);
  for (const char* name : {"Path", "Header"}) {
    const PropertyId property = keys.FindProperty("General", name);
    place.append("\n").append(Look(ownSet, property, OwnLayer).text);
    for (const SetId set : below->sets) {
      const std::string* const outer = below->values.Find(keys.FindKey(set, property));
      place.append("\n").append(outer == nullptr ? std::string_view() : *outer);
    }
  }
  return place;
}

void NodeValues::PutOwn(KeyId key, std::string_view value, bool direct) {
  if (key >= slots.size()) slots.resize(std::max<std::size_t>(key + 1, keys.GetKeyLimit()));
  Slot& slot = slots[key];
  if (slot.level != level) ownKeys.push_back(key);
  slot.level = level;
  slot.direct = direct;
  slot.value.assign(value);
}

SetId NodeValues::SetOf(std::string_view name) {
  return name.empty() ? ownSet : keys.AddSet(name);
}

void NodeValues::SetValue(std::string_view set, std::string_view section, std::string_view property,
                          std::string_view value) {
  Settle();
  const SetId setId = SetOf(set);
  const PropertyId id = keys.AddProperty(section, property);
  if (ownSet == 0 && keys.IsGeneral(id)) ownSet = setId;
  PutOwn(keys.AddKey(setId, id), value, true);
}

void NodeValues::RemoveValue(std::string_view set, std::string_view section,
                             std::string_view property) {
  Settle();
  const KeyId key = keys.AddKey(SetOf(set), keys.AddProperty(section, property));
  if (FindOwn(key) == nullptr) return;
  slots[key].level = 0;
  ownKeys.erase(std::find(ownKeys.begin(), ownKeys.end(), key));
}

void NodeValues::Apply(std::string_view forConfig, std::string_view text) {
  Settle();
  const auto options = optionsCache.Get(text, [&] { return ParseStoredOptions(text, keys); });
  const std::uint64_t mark = MarkFor(*options, forConfig);
  const std::size_t place = applied.size();
  applied.push_back(mark);
  // Kept even if already inherited, because they hold the values of other configurations.
  appliedOptions.push_back(options);
  if (place < below->applied.size() && below->applied[place] == mark) return;
  ApplySome(*options, forConfig, {}, {}, {});
}

void NodeValues::ApplySome(const StoredOptions& options, std::string_view forConfig,
                           std::string_view set, std::string_view section,
                           std::string_view property) {
  Settle();
  const auto matches = [](std::string_view wanted, std::string_view name) {
    return wanted.empty() || EqualNoCase(wanted, name);
  };
  for (const StoredOptions::Config& stored : options.configs) {
    const bool isConfig = EqualNoCase(stored.name, forConfig);
    const bool isStandard = EqualNoCase(stored.name, kStandard);
    if (!isConfig && !isStandard) continue;
    for (const auto& [key, value] : stored.values) {
      const KeyInfo& info = keys.Get(key);
      if (info.general ? !isStandard : !isConfig) continue;
      if (matches(set, keys.SetName(info.set)) &&
          matches(section, keys.SectionName(info.property)) &&
          matches(property, keys.PropertyName(info.property))) {
        PutOwn(key, value, false);
      }
    }
  }
}

std::shared_ptr<const Snapshot> NodeValues::InheritedOfChildren() {
  if (hasPending) {
    const auto parsed = valuesCache.Get(pending, [&] { return ParseValues(pending, keys); });
    if (parsed->asInherited == nullptr) {
      parsed->asInherited =
          Flatten(keys, parsed->ownSet, parsed->own.All(), parsed->applied, *parsed->below);
    }
    if (!configIsSet && !parsed->config.empty()) config = parsed->config;
    return parsed->asInherited;
  }
  auto flat = Flatten(keys, ownSet, OwnValues(), applied, *below);
  if (ownSet != 0 && !flat->HasDefaultsOf(ownSet)) {
    flat->defaultSets.push_back(ownSet);
    for (const auto& [key, value] : definitions.DefaultsOf(ownSet).All()) {
      flat->defaults.Set(key, value);
    }
    flat->readyDefaults += definitions.ReadyDefaultsOf(ownSet);
  }
  return flat;
}

void NodeValues::EndParentLevel() {
  if (!hasPending && ownKeys.empty() && ownSet == 0 && applied.empty()) return;
  NewLevel(InheritedOfChildren());
}

void NodeValues::BeginChildLevel() {
  EndParentLevel();
}

std::vector<ValueMap::Value> NodeValues::OwnValues() const {
  std::vector<ValueMap::Value> own;
  own.reserve(ownKeys.size());
  for (const KeyId key : ownKeys) own.emplace_back(key, slots[key].value);
  return own;
}

const std::string* NodeValues::FindOwn(KeyId key) const {
  return key < slots.size() && slots[key].level == level ? &slots[key].value : nullptr;
}

const std::string* NodeValues::FindInherited(KeyId key) const {
  const std::string* value = below->values.Find(key);
  if (value == nullptr) return nullptr;
  const KeyInfo& info = keys.Get(key);
  // General values that an ancestor of the same type has for itself do not apply to this node.
  const bool isOthers = info.general && info.set == ownSet && below->HasSet(ownSet);
  return isOthers ? nullptr : value;
}

FoundValue NodeValues::Look(SetId set, PropertyId property, std::uint32_t layer) const {
  const KeyId key = keys.FindKey(set, property);
  const std::string* text = layer <= OwnLayer ? FindOwn(key) : nullptr;
  if (text == nullptr && layer <= InheritedLayer) {
    text = FindInherited(key);
    layer = InheritedLayer;
  }
  if (text == nullptr && layer <= DefaultLayer) {
    layer = DefaultLayer;
    text = below->defaults.Find(key);
    if (text == nullptr) text = definitions.FindDefault(set, property);
    // An empty default is treated as missing, so that the search continues outwards.
    if (text != nullptr && text->empty()) text = nullptr;
  }
  if (text == nullptr) return {};
  return {true, keys.IsGeneral(property), IdOf(set, property, layer), *text};
}

FoundValue NodeValues::FindRaw(std::string_view set, std::string_view section,
                               std::string_view property) const {
  const PropertyId id = keys.FindProperty(section, property);
  if (!set.empty()) return id == 0 ? FoundValue() : Look(keys.FindSet(set), id, OwnLayer);
  if (id != 0) {
    FoundValue found = Look(ownSet, id, OwnLayer);
    for (std::size_t i = 0; !found.found && i < below->sets.size(); ++i) {
      found = Look(below->sets[i], id, OwnLayer);
    }
    if (found.found) return found;
  }
  if (EqualNoCase(section, "Config") && EqualNoCase(property, "Name")) {
    return {true, true, 0, config};
  }
  if (EqualNoCase(section, "Install") && EqualNoCase(property, "ConfigFolder")) {
    return {true, true, 0, configFolder};
  }
  return {};
}

SetId NodeValues::AnsweringSet(std::string_view set, PropertyId id) {
  if (!set.empty()) return keys.FindSet(set);
  Settle();
  if (Look(ownSet, id, OwnLayer).found) return ownSet;
  for (const SetId outer : below->sets) {
    if (Look(outer, id, OwnLayer).found) return outer;
  }
  return ownSet;
}

FoundValue NodeValues::FindBelow(std::uint64_t id) const {
  const std::uint64_t place = id - 1;
  return Look(static_cast<SetId>(place >> 34), static_cast<PropertyId>((place >> 2) & 0xFFFFFFFFU),
              static_cast<std::uint32_t>(place & 3) + 1);
}

std::string NodeValues::Get(std::string_view set, std::string_view section,
                            std::string_view property, std::string* error) {
  Settle();
  return ResolveMacros(*this, FindRaw(set, section, property), error);
}

std::string NodeValues::Resolve(std::string_view set, std::string_view section,
                                std::string_view property, std::string_view text,
                                std::string* error, std::string* missing) {
  // Sets the value temporarily, so that a cycle through it is detected.
  std::string before;
  const bool hadOwn = GetOwn(set, section, property, before);
  const KeyId key = keys.AddKey(SetOf(set), keys.AddProperty(section, property));
  const bool direct = hadOwn && slots[key].direct;
  PutOwn(key, text, direct);
  std::string resolved = ResolveMacros(
      *this, Look(keys.Get(key).set, keys.Get(key).property, OwnLayer), error, missing);
  if (hadOwn) {
    PutOwn(key, before, direct);
  } else {
    RemoveValue(set, section, property);
  }
  return resolved;
}

bool NodeValues::GetOwn(std::string_view set, std::string_view section, std::string_view property,
                        std::string& value) {
  Settle();
  const std::string* own = FindOwn(keys.FindKey(SetOf(set), keys.FindProperty(section, property)));
  if (own != nullptr) value = *own;
  return own != nullptr;
}

Origin NodeValues::GetOrigin(std::string_view set, std::string_view section,
                             std::string_view property) {
  Settle();
  const PropertyId id = keys.FindProperty(section, property);
  if (id == 0) return Origin::None;
  const SetId setId = AnsweringSet(set, id);
  const KeyId key = keys.FindKey(setId, id);
  if (FindOwn(key) != nullptr) return Origin::Own;
  if (FindInherited(key) != nullptr) return Origin::Inherited;
  const bool isDefined =
      below->defaults.Find(key) != nullptr || definitions.Find(setId, id) != nullptr;
  return isDefined ? Origin::Definition : Origin::None;
}

bool NodeValues::Holds(const Condition& condition) {
  if (condition.IsEmpty()) return true;
  const std::string value = Get(condition.set, condition.section, condition.property);
  const bool matches =
      std::any_of(condition.values.begin(), condition.values.end(),
                  [&](const std::string& each) { return EqualNoCase(each, value); });
  return matches != condition.negated;
}

}  // namespace tarn::options
