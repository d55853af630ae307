#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/options/KeyTable.h"

namespace tarn::options {

// Map from keys to raw values, with constant-time lookup through an array indexed by key.
class ValueMap {
 public:
  using Value = std::pair<KeyId, std::string>;

  void Set(KeyId key, std::string value);
  // Returns nullptr if there is no value. Borrowed until the map changes.
  const std::string* Find(KeyId key) const {
    return key < places_.size() && places_[key] != 0 ? &values_[places_[key] - 1].second : nullptr;
  }
  // All values, in insertion order.
  const std::vector<Value>& All() const { return values_; }

 private:
  std::vector<Value> values_;
  std::vector<std::uint32_t> places_;  // by key: index in `values` + 1
};

// Everything below a node's own values: the flattened values of its ancestors, and the defaults.
// Shared by all nodes of a parent and immutable once shared.
struct Snapshot {
  std::vector<SetId> sets;             // sets of the ancestors, innermost first
  std::vector<std::uint64_t> applied;  // marks of the stored options included, in order
  ValueMap values;
  std::vector<SetId> defaultSets;  // sets whose defaults are in `defaults`
  ValueMap defaults;
  std::string serializedValues;  // both maps, serialized for a values text
  std::string serializedDefaults;

  // Linear in the number of ancestors, which is small.
  bool HasSet(SetId set) const;
  bool HasDefaultsOf(SetId set) const;
};

// A parsed values text.
struct ParsedValues {
  std::string text;
  SetId ownSet = 0;
  std::string config;
  std::vector<std::uint64_t> applied;
  ValueMap own;
  std::shared_ptr<const Snapshot> below;        // never null
  std::shared_ptr<const Snapshot> asInherited;  // `own` merged over `below`, computed on first use
};

std::shared_ptr<ParsedValues> ParseValues(std::string_view text, KeyTable& keys);

// Returns the values that children of a node inherit: its own values merged over `below`. Replaces
// `$(Inherited)` in an own value with the value it refers to.
std::shared_ptr<Snapshot> Flatten(const KeyTable& keys, SetId ownSet,
                                  const std::vector<ValueMap::Value>& own,
                                  const std::vector<std::uint64_t>& applied, const Snapshot& below);

// Serializes values as elements of a values text; `layer` is the letter of the elements.
void AppendElements(std::string& to, const KeyTable& keys,
                    const std::vector<ValueMap::Value>& values, char layer);

// LRU cache of the last few parsed texts, keyed by content: all children of a node are passed the
// same text. A lookup compares with each of the few entries.
template <class Parsed>
class TextCache {
 public:
  explicit TextCache(std::size_t size) : limit_(size) {}

  // Returns nullptr if the text isn't among them.
  std::shared_ptr<Parsed> Find(std::string_view text) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      if (entries_[i]->text != text) continue;
      std::shared_ptr<Parsed> found = entries_[i];
      for (; i > 0; --i) entries_[i].swap(entries_[i - 1]);
      return found;
    }
    return nullptr;
  }
  template <class Make>
  std::shared_ptr<Parsed> Get(std::string_view text, Make make) {
    if (std::shared_ptr<Parsed> found = Find(text)) return found;
    if (entries_.size() >= limit_) entries_.pop_back();
    entries_.insert(entries_.begin(), make());
    return entries_.front();
  }
  void Clear() { entries_.clear(); }

 private:
  std::size_t limit_;
  std::vector<std::shared_ptr<Parsed>> entries_;  // most recently used first
};

}  // namespace tarn::options
