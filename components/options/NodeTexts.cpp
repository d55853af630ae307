// Serialization: all values of a node, and values in their stored form.
#include <algorithm>

#include "components/options/NodeValues.h"
#include "platform/text/Text.h"

namespace tarn::options {

std::string NodeValues::ToText() {
  Settle();
  std::string text;
  text.reserve(lastTextSize + 64);
  ValuesHeader header{keys.SetName(ownSet), {}, config, applied};
  for (const SetId set : below->sets) header.outerSets.push_back(keys.SetName(set));
  ValuesWriter writer(text);
  writer.Begin(header);
  const KeyInfo* open = nullptr;
  for (const KeyId key : ownKeys) {
    const KeyInfo& info = keys.Get(key);
    if (keys.PropertyName(info.property).empty()) continue;
    if (open == nullptr || open->start != info.start) {
      text += open == nullptr ? "<v" : "/><v";
      text += info.start;
      open = &info;
    }
    text += info.attribute;
    AppendEscaped(text, slots[key].value);
    text += '"';
  }
  if (open != nullptr) text += "/>";
  text += below->readyValues;
  text += below->readyDefaults;
  if (ownSet != 0 && !below->HasDefaultsOf(ownSet)) text += definitions.ReadyDefaultsOf(ownSet);
  writer.End();
  lastTextSize = text.size();
  return text;
}

bool NodeValues::IsRemovable(const KeyInfo& info) const {
  const PropertyDefinition* definition = definitions.Find(info.set, info.property);
  return definition == nullptr || definition->removable;
}

// Returns the raw value of the key in a configuration, or nullptr.
const std::string* NodeValues::ValueFor(std::string_view forConfig, KeyId key) {
  const KeyInfo& info = keys.Get(key);
  const std::string* own = FindOwn(key);
  const bool inForce = info.general || forConfig.empty() || EqualNoCase(forConfig, config);
  // A value set individually belongs to the configuration that is queried next.
  if (own != nullptr && (inForce || slots[key].direct)) return own;
  if (!inForce) {
    for (std::size_t i = appliedOptions.size(); i-- > 0;) {
      if (const std::string* stored = appliedOptions[i]->Find(forConfig, key)) return stored;
    }
  } else if (const std::string* inherited = FindInherited(key)) {
    return inherited;
  }
  const std::string* text = below->defaults.Find(key);
  return text != nullptr ? text : definitions.FindDefault(info.set, info.property);
}

std::vector<KeyId> NodeValues::AllKeys() {
  std::vector<KeyId> all = ownKeys;
  for (const auto& [key, value] : below->values.All()) all.push_back(key);
  for (const auto& [key, value] : below->defaults.All()) all.push_back(key);
  std::vector<SetId> order{ownSet};
  order.insert(order.end(), below->sets.begin(), below->sets.end());
  for (const SetId set : order) {
    if (set == 0) continue;
    for (const auto& [key, value] : definitions.DefaultsOf(set).All()) all.push_back(key);
  }
  const auto rank = [&](KeyId key) {
    return std::find(order.begin(), order.end(), keys.Get(key).set) - order.begin();
  };
  std::stable_sort(all.begin(), all.end(), [&](KeyId a, KeyId b) {
    const auto rankA = rank(a);
    const auto rankB = rank(b);
    if (rankA != rankB) return rankA < rankB;
    if (keys.Get(a).start != keys.Get(b).start) return keys.Get(a).start < keys.Get(b).start;
    return a < b;
  });
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

std::string NodeValues::ConfigText(std::string_view forConfig, std::string_view set,
                                   std::string_view section, std::string_view property) {
  Settle();
  StoredWriter writer(forConfig);
  bool isEmpty = true;
  const auto write = [&](KeyId key) {
    const std::string* value = ValueFor(forConfig, key);
    if (value == nullptr) return;
    const KeyInfo& info = keys.Get(key);
    writer.Value(keys.SetName(info.set), keys.SectionName(info.property),
                 keys.PropertyName(info.property), *value, IsRemovable(info));
    isEmpty = false;
  };
  if (!property.empty()) {
    write(keys.AddKey(SetOf(set), keys.AddProperty(section, property)));
  } else {
    for (const KeyId key : AllKeys()) {
      const KeyInfo& info = keys.Get(key);
      const bool wanted =
          (set.empty() || EqualNoCase(set, keys.SetName(info.set))) &&
          (section.empty() || EqualNoCase(section, keys.SectionName(info.property)));
      if (wanted) write(key);
    }
  }
  return isEmpty && !(set.empty() && section.empty() && property.empty()) ? std::string()
                                                                          : writer.Finish();
}

}  // namespace tarn::options
