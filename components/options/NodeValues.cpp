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
    : keys_(keyTable),
      definitions_(definitionTable),
      nothing_(std::make_shared<Snapshot>()),
      valuesCache_(kValuesTexts),
      optionsCache_(kOptionsTexts) {
  below_ = nothing_;
}

void NodeValues::NewLevel(std::shared_ptr<const Snapshot> inherited) {
  hasPending_ = false;
  ownSet_ = 0;
  ++level_;
  ownKeys_.clear();
  applied_.clear();
  appliedOptions_.clear();
  below_ = std::move(inherited);
}

void NodeValues::Clear() {
  NewLevel(nothing_);
}

void NodeValues::SetConfig(std::string_view name) {
  config_ = name.empty() ? kStandard : name;
  configIsSet_ = true;
}

bool NodeValues::ReadText(std::string_view text) {
  if (!HasRoot(text, "Values")) return false;
  if (!hasPending_ && ownKeys_.empty() && below_ == nothing_ && ownSet_ == 0) {
    known_ = valuesCache_.Find(text);
    if (known_ == nullptr) pending_ = text;
    hasPending_ = true;
    return true;
  }
  Settle();
  Merge(*valuesCache_.Get(text, [&] { return ParseValues(text, keys_); }));
  return true;
}

std::shared_ptr<ParsedValues> NodeValues::ParsePending() {
  if (known_ != nullptr) return known_;
  return valuesCache_.Get(pending_, [&] { return ParseValues(pending_, keys_); });
}

void NodeValues::Settle() {
  if (!hasPending_) return;
  hasPending_ = false;
  const auto parsed = ParsePending();
  ownSet_ = parsed->ownSet;
  below_ = parsed->below;
  applied_ = parsed->applied;
  for (const auto& [key, value] : parsed->own.All()) PutOwn(key, value, false);
  if (!configIsSet_ && !parsed->config.empty()) config_ = parsed->config;
}

void NodeValues::Merge(const ParsedValues& parsed) {
  auto merged = std::make_shared<Snapshot>(*below_);
  for (const SetId set : parsed.below->sets) {
    if (!merged->HasSet(set)) merged->sets.push_back(set);
  }
  for (const SetId set : parsed.below->defaultSets) {
    if (!merged->HasDefaultsOf(set)) merged->defaultSets.push_back(set);
  }
  for (const auto& [key, value] : parsed.below->values.All()) merged->values.Set(key, value);
  for (const auto& [key, value] : parsed.below->defaults.All()) merged->defaults.Set(key, value);
  merged->serializedValues.clear();
  merged->serializedDefaults.clear();
  AppendElements(merged->serializedValues, keys_, merged->values.All(), 'i');
  AppendElements(merged->serializedDefaults, keys_, merged->defaults.All(), 'd');
  below_ = std::move(merged);
  if (ownSet_ == 0) ownSet_ = parsed.ownSet;
  for (const auto& [key, value] : parsed.own.All()) PutOwn(key, value, false);
}

void NodeValues::EnterSet(std::string_view name) {
  Settle();
  if (ownSet_ == 0 && !name.empty()) ownSet_ = keys_.AddSet(name);
}

const std::string& NodeValues::OwnSet() {
  Settle();
  return keys_.SetName(ownSet_);
}

std::string NodeValues::Place() {
  Settle();
  std::string place = keys_.SetName(ownSet_);
  for (const char* name : {"Path", "Header"}) {
    const PropertyId property = keys_.FindProperty("General", name);
    place.append("\n").append(FindStored(ownSet_, property, OwnLayer).text);
    for (const SetId set : below_->sets) {
      const std::string* const outer = below_->values.Find(keys_.FindKey(set, property));
      place.append("\n").append(outer == nullptr ? std::string_view() : *outer);
    }
  }
  return place;
}

void NodeValues::PutOwn(KeyId key, std::string_view value, bool direct) {
  if (key >= slots_.size()) slots_.resize(std::max<std::size_t>(key + 1, keys_.GetKeyLimit()));
  Slot& slot = slots_[key];
  if (slot.level != level_) ownKeys_.push_back(key);
  slot.level = level_;
  slot.direct = direct;
  slot.value.assign(value);
}

SetId NodeValues::SetOf(std::string_view name) {
  return name.empty() ? ownSet_ : keys_.AddSet(name);
}

void NodeValues::SetValue(std::string_view set, std::string_view section, std::string_view property,
                          std::string_view value) {
  Settle();
  const SetId setId = SetOf(set);
  const PropertyId id = keys_.AddProperty(section, property);
  if (ownSet_ == 0 && keys_.IsGeneral(id)) ownSet_ = setId;
  PutOwn(keys_.AddKey(setId, id), value, true);
}

void NodeValues::RemoveValue(std::string_view set, std::string_view section,
                             std::string_view property) {
  Settle();
  const KeyId key = keys_.AddKey(SetOf(set), keys_.AddProperty(section, property));
  if (FindOwn(key) == nullptr) return;
  slots_[key].level = 0;
  ownKeys_.erase(std::find(ownKeys_.begin(), ownKeys_.end(), key));
}

void NodeValues::Apply(std::string_view forConfig, std::string_view text) {
  Settle();
  const auto options = optionsCache_.Get(text, [&] { return ParseStoredOptions(text, keys_); });
  const std::uint64_t mark = MarkFor(*options, forConfig);
  const std::size_t place = applied_.size();
  applied_.push_back(mark);
  // Kept even if already inherited, because they hold the values of other configurations.
  appliedOptions_.push_back(options);
  if (place < below_->applied.size() && below_->applied[place] == mark) return;
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
      const KeyInfo& info = keys_.Get(key);
      if (info.general ? !isStandard : !isConfig) continue;
      if (matches(set, keys_.SetName(info.set)) &&
          matches(section, keys_.SectionName(info.property)) &&
          matches(property, keys_.PropertyName(info.property))) {
        PutOwn(key, value, false);
      }
    }
  }
}

std::shared_ptr<const Snapshot> NodeValues::InheritedOfChildren() {
  if (hasPending_) {
    const auto parsed = ParsePending();
    if (parsed->asInherited == nullptr) {
      parsed->asInherited =
          Flatten(keys_, parsed->ownSet, parsed->own.All(), parsed->applied, *parsed->below);
    }
    if (!configIsSet_ && !parsed->config.empty()) config_ = parsed->config;
    return parsed->asInherited;
  }
  auto flat = Flatten(keys_, ownSet_, OwnValues(), applied_, *below_);
  if (ownSet_ != 0 && !flat->HasDefaultsOf(ownSet_)) {
    flat->defaultSets.push_back(ownSet_);
    for (const auto& [key, value] : definitions_.DefaultsOf(ownSet_).All()) {
      flat->defaults.Set(key, value);
    }
    flat->serializedDefaults += definitions_.SerializedDefaultsOf(ownSet_);
  }
  return flat;
}

void NodeValues::EndParentLevel() {
  if (!hasPending_ && ownKeys_.empty() && ownSet_ == 0 && applied_.empty()) return;
  NewLevel(InheritedOfChildren());
}

void NodeValues::BeginChildLevel() {
  EndParentLevel();
}

std::vector<ValueMap::Value> NodeValues::OwnValues() const {
  std::vector<ValueMap::Value> own;
  own.reserve(ownKeys_.size());
  for (const KeyId key : ownKeys_) own.emplace_back(key, slots_[key].value);
  return own;
}

const std::string* NodeValues::FindOwn(KeyId key) const {
  return key < slots_.size() && slots_[key].level == level_ ? &slots_[key].value : nullptr;
}

const std::string* NodeValues::FindInherited(KeyId key) const {
  const std::string* value = below_->values.Find(key);
  if (value == nullptr) return nullptr;
  const KeyInfo& info = keys_.Get(key);
  // General values that an ancestor of the same type has for itself do not apply to this node.
  const bool isOthers = info.general && info.set == ownSet_ && below_->HasSet(ownSet_);
  return isOthers ? nullptr : value;
}

FoundValue NodeValues::FindStored(SetId set, PropertyId property, std::uint32_t layer) const {
  const KeyId key = keys_.FindKey(set, property);
  const std::string* text = layer <= OwnLayer ? FindOwn(key) : nullptr;
  if (text == nullptr && layer <= InheritedLayer) {
    text = FindInherited(key);
    layer = InheritedLayer;
  }
  if (text == nullptr && layer <= DefaultLayer) {
    layer = DefaultLayer;
    text = below_->defaults.Find(key);
    if (text == nullptr) text = definitions_.FindDefault(set, property);
    // An empty default is treated as missing, so that the search continues outwards.
    if (text != nullptr && text->empty()) text = nullptr;
  }
  if (text == nullptr) return {};
  return {true, keys_.IsGeneral(property), IdOf(set, property, layer), *text};
}

FoundValue NodeValues::FindRaw(std::string_view set, std::string_view section,
                               std::string_view property) const {
  const PropertyId id = keys_.FindProperty(section, property);
  if (!set.empty()) return id == 0 ? FoundValue() : FindStored(keys_.FindSet(set), id, OwnLayer);
  if (id != 0) {
    FoundValue found = FindStored(ownSet_, id, OwnLayer);
    for (std::size_t i = 0; !found.found && i < below_->sets.size(); ++i) {
      found = FindStored(below_->sets[i], id, OwnLayer);
    }
    if (found.found) return found;
  }
  if (EqualNoCase(section, "Config") && EqualNoCase(property, "Name")) {
    return {true, true, 0, config_};
  }
  if (EqualNoCase(section, "Install") && EqualNoCase(property, "ConfigFolder")) {
    return {true, true, 0, configFolder_};
  }
  return {};
}

SetId NodeValues::AnsweringSet(std::string_view set, PropertyId id) {
  if (!set.empty()) return keys_.FindSet(set);
  Settle();
  if (FindStored(ownSet_, id, OwnLayer).found) return ownSet_;
  for (const SetId outer : below_->sets) {
    if (FindStored(outer, id, OwnLayer).found) return outer;
  }
  return ownSet_;
}

FoundValue NodeValues::FindBelow(std::uint64_t id) const {
  const std::uint64_t place = id - 1;
  return FindStored(static_cast<SetId>(place >> 34),
                    static_cast<PropertyId>((place >> 2) & 0xFFFFFFFFU),
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
  const KeyId key = keys_.AddKey(SetOf(set), keys_.AddProperty(section, property));
  const bool direct = hadOwn && slots_[key].direct;
  PutOwn(key, text, direct);
  std::string resolved = ResolveMacros(
      *this, FindStored(keys_.Get(key).set, keys_.Get(key).property, OwnLayer), error, missing);
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
  const std::string* own =
      FindOwn(keys_.FindKey(SetOf(set), keys_.FindProperty(section, property)));
  if (own != nullptr) value = *own;
  return own != nullptr;
}

Origin NodeValues::GetOrigin(std::string_view set, std::string_view section,
                             std::string_view property) {
  Settle();
  const PropertyId id = keys_.FindProperty(section, property);
  if (id == 0) return Origin::None;
  const SetId setId = AnsweringSet(set, id);
  const KeyId key = keys_.FindKey(setId, id);
  if (FindOwn(key) != nullptr) return Origin::Own;
  if (FindInherited(key) != nullptr) return Origin::Inherited;
  const bool isDefined =
      below_->defaults.Find(key) != nullptr || definitions_.Find(setId, id) != nullptr;
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
