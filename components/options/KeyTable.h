#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Interning of value names as small integers. Publishing a node looks up about thirty values by
// three names each; with integers, everything after the first step is an array access.
namespace tarn::options {

using SetId = std::uint32_t;       // 0: unknown set
using PropertyId = std::uint32_t;  // section and property; 0: none
using KeyId = std::uint32_t;       // set, section and property; 0: none

// Interns single names and pairs of names, numbered from 1, ignoring case. Open-addressing hash
// table with linear probing; entries are never removed.
class NameTable {
 public:
  struct Name {
    std::uint64_t hash = 0;
    std::string first;  // as spelled when added
    std::string second;
  };

  NameTable();
  std::uint32_t Find(std::string_view first, std::string_view second) const;
  std::uint32_t FindOrAdd(std::string_view first, std::string_view second);
  const Name& Get(std::uint32_t id) const { return names_[id]; }
  std::uint32_t GetCount() const { return static_cast<std::uint32_t>(names_.size()) - 1; }

 private:
  std::uint32_t Probe(std::uint64_t hash, std::string_view first, std::string_view second,
                      std::size_t& bucket) const;
  void Grow();

  std::vector<Name> names_;             // [0] is unused
  std::vector<std::uint32_t> buckets_;  // size is a power of two; 0 means free
};

// Properties of a key that do not depend on its value.
struct KeyInfo {
  SetId set = 0;
  PropertyId property = 0;
  bool general = false;   // in the section General
  std::string start;      // start of its element in a values text, without the layer's letter
  std::string attribute;  // its attribute in the element, up to the value
};

// Numbers sets, properties (section and property) and keys (set and property). Lookups by number
// are array accesses; numbers are never reused.
class KeyTable {
 public:
  KeyTable();

  SetId FindSet(std::string_view name) const { return sets_.Find(name, {}); }
  SetId AddSet(std::string_view name) { return sets_.FindOrAdd(name, {}); }
  const std::string& SetName(SetId set) const { return sets_.Get(set).first; }

  PropertyId FindProperty(std::string_view section, std::string_view property) const {
    return properties_.Find(section, property);
  }
  PropertyId AddProperty(std::string_view section, std::string_view property);
  const std::string& SectionName(PropertyId id) const { return properties_.Get(id).first; }
  const std::string& PropertyName(PropertyId id) const { return properties_.Get(id).second; }
  bool IsGeneral(PropertyId id) const { return general_[id]; }

  KeyId FindKey(SetId set, PropertyId property) const {
    if (set >= bySet_.size() || property >= bySet_[set].size()) return 0;
    return bySet_[set][property];
  }
  KeyId AddKey(SetId set, PropertyId property);
  KeyId AddKey(std::string_view set, std::string_view section, std::string_view property) {
    return AddKey(AddSet(set), AddProperty(section, property));
  }
  const KeyInfo& Get(KeyId key) const { return keys_[key]; }
  // All key numbers are below this.
  std::size_t GetKeyLimit() const { return keys_.size(); }
  // Returns "set.section.property".
  std::string KeyText(KeyId key) const;

 private:
  NameTable sets_;
  NameTable properties_;
  std::vector<bool> general_;  // by property
  std::vector<KeyInfo> keys_;
  std::vector<std::vector<KeyId>> bySet_;  // by set and property
};

}  // namespace tarn::options
