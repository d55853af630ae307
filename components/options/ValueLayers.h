#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/options/KeyTable.h"

namespace tarn::options {

// Raw values by key.
class ValueMap {
 public:
  using Value = std::pair<KeyId, std::string>;

  void Set(KeyId key, std::string value);
  // Null when there is none. Borrowed until the map changes.
  const std::string* Find(KeyId key) const {
    return key < places.size() && places[key] != 0 ? &values[places[key] - 1].second : nullptr;
  }
  // In the order in which the keys came in.
  const std::vector<Value>& All() const { return values; }

 private:
  std::vector<Value> values;
  std::vector<std::uint32_t> places;  // by key: place in `values` + 1
};

// Everything below a node's own values: what its ancestors hold, flattened, and defaults. Shared by
// all nodes of one parent and never changed once it is shared.
struct Snapshot {
  std::vector<SetId> sets;             // of the ancestors, from the inside out
  std::vector<std::uint64_t> applied;  // marks of the stored options that went into it, in order
  ValueMap values;
  std::vector<SetId> defaultSets;  // whose defaults stand in `defaults`
  ValueMap defaults;
  std::string readyValues;  // both as they stand in a values text
  std::string readyDefaults;

  bool HasSet(SetId set) const;
  bool HasDefaultsOf(SetId set) const;
};

// A values text, taken apart.
struct ParsedValues {
  std::string text;
  SetId ownSet = 0;
  std::string config;
  std::vector<std::uint64_t> applied;
  ValueMap own;
  std::shared_ptr<const Snapshot> below;        // never null
  std::shared_ptr<const Snapshot> asInherited;  // own values laid over `below`, made at first use
};

std::shared_ptr<ParsedValues> ParseValues(std::string_view text, KeyTable& keys);

// What children of a node inherit: its own values laid over what it inherits itself. `$(Inherited)`
// in an own value gives way to the value that it stands for. `defaults` and `readyDefaults` are
// those of the own set, for when `below` lacks them.
std::shared_ptr<Snapshot> Flatten(const KeyTable& keys, SetId ownSet,
                                  const std::vector<ValueMap::Value>& own,
                                  const std::vector<std::uint64_t>& applied, const Snapshot& below);

// Values as elements of a values text; `layer` is the letter of their elements.
void AppendElements(std::string& to, const KeyTable& keys,
                    const std::vector<ValueMap::Value>& values, char layer);

// The last few parsed texts, found by their bytes: the children of one node come with one text.
template <class Parsed>
class TextCache {
 public:
  explicit TextCache(std::size_t size) : limit(size) {}

  template <class Make>
  std::shared_ptr<Parsed> Get(std::string_view text, Make make) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (entries[i]->text != text) continue;
      std::shared_ptr<Parsed> found = entries[i];
      for (; i > 0; --i) entries[i].swap(entries[i - 1]);
      return found;
    }
    if (entries.size() >= limit) entries.pop_back();
    entries.insert(entries.begin(), make());
    return entries.front();
  }
  void Clear() { entries.clear(); }

 private:
  std::size_t limit;
  std::vector<std::shared_ptr<Parsed>> entries;  // used last first
};

}  // namespace tarn::options
