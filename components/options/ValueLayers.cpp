#include "components/options/ValueLayers.h"

#include <algorithm>

#include "components/values/ValuesXml.h"
#include "platform/text/Text.h"

namespace tarn::options {

namespace {

constexpr std::string_view kInherited = "(Inherited)";

// Returns `text` with every $(Inherited) replaced.
std::string WithInherited(std::string_view text, std::string_view inherited) {
  std::string result;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t dollar = text.find('$', begin);
    result.append(text, begin, dollar - begin);
    if (dollar == std::string_view::npos) return result;
    if (StartsWithNoCase(text.substr(dollar + 1), kInherited)) {
      result += inherited;
      begin = dollar + 1 + kInherited.size();
    } else {
      const std::size_t length = text.substr(dollar).starts_with("$$") ? 2 : 1;
      result.append(text, dollar, length);
      begin = dollar + length;
    }
  }
}

// Fills in a ParsedValues.
class Parser : public ValuesSink {
 public:
  Parser(KeyTable& keyTable, ParsedValues& target, Snapshot& snapshot)
      : keys_(keyTable), parsed_(target), below_(snapshot) {}

  void OnHeader(const ValuesHeader& header) override {
    if (!header.ownSet.empty()) parsed_.ownSet = keys_.AddSet(header.ownSet);
    parsed_.config = header.config;
    parsed_.applied = header.applied;
    for (const std::string& set : header.outerSets) below_.sets.push_back(keys_.AddSet(set));
  }

  void OnValue(ValueLayer layer, std::string_view set, std::string_view section,
               std::string_view property, std::string value) override {
    const KeyId key = keys_.AddKey(set, section, property);
    if (layer == ValueLayer::Own) parsed_.own.Set(key, std::move(value));
    if (layer == ValueLayer::Inherited) below_.values.Set(key, std::move(value));
    if (layer != ValueLayer::Default) return;
    const SetId setId = keys_.Get(key).set;
    if (!below_.HasDefaultsOf(setId)) below_.defaultSets.push_back(setId);
    below_.defaults.Set(key, std::move(value));
  }

 private:
  KeyTable& keys_;
  ParsedValues& parsed_;
  Snapshot& below_;
};

}  // namespace

void ValueMap::Set(KeyId key, std::string value) {
  if (key >= places_.size()) places_.resize(key + 1);
  if (places_[key] != 0) {
    values_[places_[key] - 1].second = std::move(value);
    return;
  }
  values_.emplace_back(key, std::move(value));
  places_[key] = static_cast<std::uint32_t>(values_.size());
}

bool Snapshot::HasSet(SetId set) const {
  return std::find(sets.begin(), sets.end(), set) != sets.end();
}

bool Snapshot::HasDefaultsOf(SetId set) const {
  return std::find(defaultSets.begin(), defaultSets.end(), set) != defaultSets.end();
}

void AppendElements(std::string& to, const KeyTable& keys,
                    const std::vector<ValueMap::Value>& values, char layer) {
  const std::string* open = nullptr;
  for (const auto& [key, value] : values) {
    const KeyInfo& info = keys.Get(key);
    if (keys.PropertyName(info.property).empty()) continue;
    if (open == nullptr || *open != info.start) {
      if (open != nullptr) to += "/>";
      to += '<';
      to += layer;
      to += info.start;
      open = &info.start;
    }
    to += info.attribute;
    AppendEscaped(to, value);
    to += '"';
  }
  if (open != nullptr) to += "/>";
}

std::shared_ptr<ParsedValues> ParseValues(std::string_view text, KeyTable& keys) {
  auto parsed = std::make_shared<ParsedValues>();
  parsed->text = text;
  auto below = std::make_shared<Snapshot>();
  Parser parser(keys, *parsed, *below);
  ReadValuesXml(text, parser);
  AppendElements(below->serializedValues, keys, below->values.All(), 'i');
  AppendElements(below->serializedDefaults, keys, below->defaults.All(), 'd');
  // The marks of the ancestors' options are the first ones of the node's own list.
  below->applied = parsed->applied;
  parsed->below = std::move(below);
  return parsed;
}

std::shared_ptr<Snapshot> Flatten(const KeyTable& keys, SetId ownSet,
                                  const std::vector<ValueMap::Value>& own,
                                  const std::vector<std::uint64_t>& applied,
                                  const Snapshot& below) {
  auto flat = std::make_shared<Snapshot>();
  if (ownSet != 0) flat->sets.push_back(ownSet);
  for (const SetId set : below.sets) {
    if (set != ownSet) flat->sets.push_back(set);
  }
  flat->applied = applied;
  const bool hidesGeneral = below.HasSet(ownSet);
  for (const auto& [key, value] : below.values.All()) {
    const KeyInfo& info = keys.Get(key);
    if (hidesGeneral && info.general && info.set == ownSet) continue;
    flat->values.Set(key, value);
  }
  for (const auto& [key, value] : own) {
    const std::string* inherited = keys.Get(key).general ? nullptr : flat->values.Find(key);
    flat->values.Set(key, inherited == nullptr ? value : WithInherited(value, *inherited));
  }
  flat->defaultSets = below.defaultSets;
  flat->defaults = below.defaults;
  flat->serializedDefaults = below.serializedDefaults;
  // Groups values so that the text names each section once.
  std::vector<ValueMap::Value> sorted = flat->values.All();
  std::stable_sort(sorted.begin(), sorted.end(), [&keys](const auto& a, const auto& b) {
    return keys.Get(a.first).start < keys.Get(b.first).start;
  });
  AppendElements(flat->serializedValues, keys, sorted, 'i');
  return flat;
}

}  // namespace tarn::options
