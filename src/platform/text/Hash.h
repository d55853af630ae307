#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace tarn {

// A 64-bit hash that is the same in every run and on every machine of one byte order; for telling
// whether a text is the one that was seen before, not against an attacker. Eight bytes a step.
inline std::uint64_t HashBytes(std::string_view bytes, std::uint64_t seed = 0) {
  constexpr std::uint64_t kFirst = 0x9E3779B97F4A7C15ull;
  constexpr std::uint64_t kSecond = 0xD6E8FEB86659FD93ull;
  std::uint64_t hash = seed ^ (bytes.size() * kFirst);
  const char* at = bytes.data();
  std::size_t left = bytes.size();
  while (left >= sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    hash = (hash ^ word) * kSecond;
    hash ^= hash >> 32;
    at += sizeof word;
    left -= sizeof word;
  }
  std::uint64_t tail = 0;
  if (left > 0) std::memcpy(&tail, at, left);
  hash = (hash ^ tail) * kSecond;
  hash ^= hash >> 29;
  hash *= kFirst;
  return hash ^ (hash >> 32);
}

}  // namespace tarn
