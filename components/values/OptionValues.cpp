#include "components/values/OptionValues.h"

#include <algorithm>

#include "platform/text/Text.h"

namespace tarn {

namespace {

constexpr std::size_t kLayers = 3;

std::string KeyOf(std::string_view set, std::string_view section, std::string_view property) {
  std::string key(set.size() + section.size() + property.size() + 3, '\n');
  auto to = key.begin();
  for (const std::string_view text : {set, section, property}) {
    to = std::transform(text.begin(), text.end(), to, [](char c) {
      return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    });
    ++to;
  }
  return key;
}

bool IsConfigName(std::string_view set, std::string_view section, std::string_view property) {
  return set.empty() && EqualNoCase(section, "Config") && EqualNoCase(property, "Name");
}

}  // namespace

OptionValues OptionValues::FromText(std::string_view text) {
  OptionValues values;
  constexpr std::size_t kBytesPerValue = 64;  // few have less
  values.entries_.reserve(text.size() / kBytesPerValue);
  values.index_.reserve(text.size() / kBytesPerValue);
  ReadValuesXml(text, values);
  return values;
}

std::string OptionValues::ToText() const {
  std::string text;
  ValuesWriter writer(text);
  writer.Begin(header_);
  for (std::size_t layer = 0; layer < kLayers; ++layer) {
    for (const Entry& entry : entries_) {
      if (!entry.layers[layer]) continue;
      writer.Value(static_cast<ValueLayer>(layer), entry.set, entry.section, entry.property,
                   *entry.layers[layer]);
    }
  }
  writer.End();
  return text;
}

void OptionValues::Put(std::string_view set, std::string_view section, std::string_view property,
                       std::string_view value) {
  OnValue(ValueLayer::Own, set.empty() ? std::string_view(header_.ownSet) : set, section, property,
          std::string(value));
}

void OptionValues::OnValue(ValueLayer layer, std::string_view set, std::string_view section,
                           std::string_view property, std::string value) {
  const bool general = EqualNoCase(section, "General");
  // General values that an ancestor of the same type has for itself do not apply to this node.
  if (layer == ValueLayer::Inherited && general && EqualNoCase(set, header_.ownSet) &&
      header_.OwnSetIsOuter()) {
    return;
  }
  const auto [place, isNew] = index_.try_emplace(KeyOf(set, section, property), entries_.size());
  if (isNew) {
    entries_.push_back(
        {std::string(set), std::string(section), std::string(property), general, {}});
  }
  entries_[place->second].layers[static_cast<std::size_t>(layer)] = std::move(value);
}

const OptionValues::Entry* OptionValues::FindEntry(std::string_view set, std::string_view section,
                                                   std::string_view property) const {
  const auto find = [&](std::string_view name) -> const Entry* {
    const auto place = index_.find(KeyOf(name, section, property));
    return place == index_.end() ? nullptr : &entries_[place->second];
  };
  if (!set.empty()) return find(set);
  const Entry* entry = find(header_.ownSet);
  for (std::size_t i = 0; entry == nullptr && i < header_.outerSets.size(); ++i) {
    entry = find(header_.outerSets[i]);
  }
  return entry;
}

FoundValue OptionValues::FromLayer(std::size_t entry, std::size_t layer) const {
  const Entry& values = entries_[entry];
  for (; layer < kLayers; ++layer) {
    if (!values.layers[layer]) continue;
    return {true, values.literal, entry * kLayers + layer + 1, *values.layers[layer]};
  }
  return {};
}

FoundValue OptionValues::FindRaw(std::string_view set, std::string_view section,
                                 std::string_view property) const {
  if (const Entry* entry = FindEntry(set, section, property)) {
    return FromLayer(static_cast<std::size_t>(entry - entries_.data()), 0);
  }
  if (!IsConfigName(set, section, property)) return {};
  return {true, true, 0, header_.config};
}

FoundValue OptionValues::FindBelow(std::uint64_t id) const {
  const std::size_t place = static_cast<std::size_t>(id) - 1;
  return FromLayer(place / kLayers, place % kLayers + 1);
}

const std::string* OptionValues::Find(std::string_view set, std::string_view section,
                                      std::string_view property) const {
  if (const Entry* entry = FindEntry(set, section, property)) {
    for (const auto& value : entry->layers) {
      if (value) return &*value;
    }
  }
  return IsConfigName(set, section, property) ? &header_.config : nullptr;
}

std::string OptionValues::Get(std::string_view set, std::string_view section,
                              std::string_view property) const {
  return ResolveMacros(*this, FindRaw(set, section, property));
}

std::string OptionValues::Resolve(std::string_view text, std::string* error,
                                  std::string* missing) const {
  return ResolveMacros(*this, {true, false, 0, text}, error, missing);
}

std::string OptionValues::ResolveUnsplit(std::string_view text, std::string* error,
                                         std::string* missing) const {
  return ResolveForSplitting(*this, {true, false, 0, text}, error, missing);
}

}  // namespace tarn
