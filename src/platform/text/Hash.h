#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace tarn {

// Non-cryptographic 64-bit hash that is stable across runs and across systems of the same byte
// order. Use it to detect changed content, not to defend against an attacker. Processes eight bytes
// per step.
inline std::uint64_t HashBytes(std::string_view bytes, std::uint64_t seed = 0) {
  constexpr std::uint64_t kFirst = 0x9E3779B97F4A7C15ull;
  constexpr std::uint64_t kSecond = 0xD6E8FEB86659FD93ull;
  std::uint64_t hash = seed ^ (bytes.size() * kFirst);
  const char* at = bytes.data();
  std::size_t left = bytes.size();
  const auto mix = [](std::uint64_t sum, std::uint64_t word) {
    sum = (sum ^ word) * kSecond;
    return sum ^ (sum >> 32);
  };
  const auto wordAt = [](const char* from) {
    std::uint64_t word = 0;
    std::memcpy(&word, from, sizeof word);
    return word;
  };
  // Each step depends on the previous one, so a long input uses four independent lanes.
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  if (left >= 16 * kWord) {
    std::uint64_t lanes[4] = {hash, hash + 1, hash + 2, hash + 3};
    for (; left >= 4 * kWord; at += 4 * kWord, left -= 4 * kWord) {
      for (std::size_t i = 0; i < 4; ++i) lanes[i] = mix(lanes[i], wordAt(at + i * kWord));
    }
    for (const std::uint64_t lane : lanes) hash = mix(hash, lane);
  }
  for (; left >= kWord; at += kWord, left -= kWord) hash = mix(hash, wordAt(at));
  std::uint64_t tail = 0;
  if (left > 0) std::memcpy(&tail, at, left);
  hash = (hash ^ tail) * kSecond;
  hash ^= hash >> 29;
  hash *= kFirst;
  return hash ^ (hash >> 32);
}

}  // namespace tarn
