#include "components/options/KeyTable.h"

#include <cstring>

#include "components/values/ValuesXml.h"
#include "platform/text/Text.h"

namespace tarn::options {

namespace {

constexpr std::uint64_t kSmallLetters = 0x2020202020202020U;

std::uint64_t Mix(std::uint64_t hash, std::uint64_t word) {
  hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
  return hash ^ (hash >> 29);
}

// Ignores letter case by setting bit 5 of every byte. A few other bytes collide too, which only
// costs a comparison.
std::uint64_t HashText(std::uint64_t hash, std::string_view text) {
  const char* at = text.data();
  std::size_t left = text.size();
  for (; left >= 8; at += 8, left -= 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, 8);
    hash = Mix(hash, word | kSmallLetters);
  }
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < left; ++i) {
    word = (word << 8) | static_cast<unsigned char>(at[i] | 0x20);
  }
  return Mix(hash, word + (static_cast<std::uint64_t>(text.size()) << 56));
}

// Compares bytewise: the name was just written with narrow stores, and wider loads would stall on
// store forwarding.
bool SameName(const std::string& known, std::string_view name) {
  if (known.size() != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (known[i] != name[i]) return EqualNoCase(known, name);
  }
  return true;
}

}  // namespace

NameTable::NameTable() : names_(1), buckets_(256) {}

std::uint32_t NameTable::Probe(std::uint64_t hash, std::string_view first, std::string_view second,
                               std::size_t& bucket) const {
  const std::size_t mask = buckets_.size() - 1;
  for (bucket = static_cast<std::size_t>(hash) & mask;; bucket = (bucket + 1) & mask) {
    const std::uint32_t id = buckets_[bucket];
    if (id == 0) return 0;
    const Name& name = names_[id];
    if (name.hash == hash && SameName(name.first, first) && SameName(name.second, second)) {
      return id;
    }
  }
}

std::uint32_t NameTable::Find(std::string_view first, std::string_view second) const {
  std::size_t bucket = 0;
  return Probe(HashText(HashText(0, first), second), first, second, bucket);
}

std::uint32_t NameTable::FindOrAdd(std::string_view first, std::string_view second) {
  const std::uint64_t hash = HashText(HashText(0, first), second);
  std::size_t bucket = 0;
  if (const std::uint32_t id = Probe(hash, first, second, bucket)) return id;
  const auto id = static_cast<std::uint32_t>(names_.size());
  names_.push_back({hash, std::string(first), std::string(second)});
  buckets_[bucket] = id;
  if (names_.size() * 2 > buckets_.size()) Grow();
  return id;
}

void NameTable::Grow() {
  buckets_.assign(buckets_.size() * 2, 0);
  const std::size_t mask = buckets_.size() - 1;
  for (std::uint32_t id = 1; id < names_.size(); ++id) {
    std::size_t bucket = static_cast<std::size_t>(names_[id].hash) & mask;
    while (buckets_[bucket] != 0) bucket = (bucket + 1) & mask;
    buckets_[bucket] = id;
  }
}

KeyTable::KeyTable() : general_(1), keys_(1) {}

PropertyId KeyTable::AddProperty(std::string_view section, std::string_view property) {
  const PropertyId id = properties_.FindOrAdd(section, property);
  if (id == general_.size()) general_.push_back(EqualNoCase(section, "General"));
  return id;
}

KeyId KeyTable::AddKey(SetId set, PropertyId property) {
  if (const KeyId known = FindKey(set, property)) return known;
  if (set >= bySet_.size()) bySet_.resize(set + 1);
  if (property >= bySet_[set].size()) bySet_[set].resize(property + 1);
  const auto key = static_cast<KeyId>(keys_.size());
  bySet_[set][property] = key;
  KeyInfo info{set, property, IsGeneral(property), " s=\"", " "};
  AppendEscaped(info.start, SetName(set));
  info.start += "\" k=\"";
  AppendEscaped(info.start, SectionName(property));
  info.start += '"';
  AppendEscapedName(info.attribute, PropertyName(property));
  info.attribute += "=\"";
  keys_.push_back(std::move(info));
  return key;
}

std::string KeyTable::KeyText(KeyId key) const {
  const KeyInfo& info = keys_[key];
  return SetName(info.set) + "." + SectionName(info.property) + "." + PropertyName(info.property);
}

}  // namespace tarn::options
