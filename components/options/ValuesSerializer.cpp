// Serialization: all values of a node, and values in their stored form.
#include <algorithm>

#include "components/options/NodeValues.h"
#include "platform/text/Text.h"

namespace tarn::options {

std::string NodeValues::ToText() {
  Settle();
  std::string text;
  text.reserve(lastTextSize_ + 64);
  ValuesHeader header{keys_.SetName(ownSet_), {}, config_, applied_};
  for (const SetId set : below_->sets) header.outerSets.push_back(keys_.SetName(set));
  ValuesWriter writer(text);
  writer.Begin(header);
  const KeyInfo* open = nullptr;
  for (const KeyId key : ownKeys_) {
    const KeyInfo& info = keys_.Get(key);
    if (keys_.PropertyName(info.property).empty()) continue;
    if (open == nullptr || open->start != info.start) {
      text += open == nullptr ? "<v" : "/><v";
      text += info.start;
      open = &info;
    }
    text += info.attribute;
    AppendEscaped(text, slots_[key].value);
    text += '"';
  }
  if (open != nullptr) text += "/>";
  text += below_->serializedValues;
  text += below_->serializedDefaults;
  if (ownSet_ != 0 && !below_->HasDefaultsOf(ownSet_))
    text += definitions_.SerializedDefaultsOf(ownSet_);
  writer.End();
  lastTextSize_ = text.size();
  return text;
}

bool NodeValues::IsRemovable(const KeyInfo& info) const {
  const PropertyDefinition* definition = definitions_.Find(info.set, info.property);
  return definition == nullptr || definition->removable;
}

// Returns the raw value of the key in a configuration, or nullptr.
const std::string* NodeValues::ValueFor(std::string_view forConfig, KeyId key) {
  const KeyInfo& info = keys_.Get(key);
  const std::string* own = FindOwn(key);
  const bool inForce = info.general || forConfig.empty() || EqualNoCase(forConfig, config_);
  // A value set individually belongs to the configuration that is queried next.
  if (own != nullptr && (inForce || slots_[key].direct)) return own;
  if (!inForce) {
    for (std::size_t i = appliedOptions_.size(); i-- > 0;) {
      if (const std::string* stored = appliedOptions_[i]->Find(forConfig, key)) return stored;
    }
  } else if (const std::string* inherited = FindInherited(key)) {
    return inherited;
  }
  const std::string* text = below_->defaults.Find(key);
  return text != nullptr ? text : definitions_.FindDefault(info.set, info.property);
}

std::vector<KeyId> NodeValues::AllKeys() {
  std::vector<KeyId> all = ownKeys_;
  for (const auto& [key, value] : below_->values.All()) all.push_back(key);
  for (const auto& [key, value] : below_->defaults.All()) all.push_back(key);
  std::vector<SetId> order{ownSet_};
  order.insert(order.end(), below_->sets.begin(), below_->sets.end());
  for (const SetId set : order) {
    if (set == 0) continue;
    for (const auto& [key, value] : definitions_.DefaultsOf(set).All()) all.push_back(key);
  }
  const auto rank = [&](KeyId key) {
    return std::find(order.begin(), order.end(), keys_.Get(key).set) - order.begin();
  };
  std::stable_sort(all.begin(), all.end(), [&](KeyId a, KeyId b) {
    const auto rankA = rank(a);
    const auto rankB = rank(b);
    if (rankA != rankB) return rankA < rankB;
    if (keys_.Get(a).start != keys_.Get(b).start) return keys_.Get(a).start < keys_.Get(b).start;
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
    const KeyInfo& info = keys_.Get(key);
    writer.Value(keys_.SetName(info.set), keys_.SectionName(info.property),
                 keys_.PropertyName(info.property), *value, IsRemovable(info));
    isEmpty = false;
  };
  if (!property.empty()) {
    write(keys_.AddKey(SetOf(set), keys_.AddProperty(section, property)));
  } else {
    for (const KeyId key : AllKeys()) {
      const KeyInfo& info = keys_.Get(key);
      const bool wanted =
          (set.empty() || EqualNoCase(set, keys_.SetName(info.set))) &&
          (section.empty() || EqualNoCase(section, keys_.SectionName(info.property)));
      if (wanted) write(key);
    }
  }
  return isEmpty && !(set.empty() && section.empty() && property.empty()) ? std::string()
                                                                          : writer.Finish();
}

}  // namespace tarn::options
