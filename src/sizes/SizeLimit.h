#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarn::sizes {

// The most bytes of a memory that a program may use.
struct SizeLimit {
  std::optional<std::uint64_t> most;
  std::string problem;  // why there is none, as the rest of a sentence
};

// Reads a limit: "80" or "80 %" of `total`, which is 0 if it is unknown, or a number of bytes with
// a unit: "30000 B", "28 KiB", "28K", "1M".
SizeLimit ReadSizeLimit(std::string_view text, std::uint64_t total);

// Reads a size in bytes, decimal or hexadecimal with the prefix 0x; 0 if it is anything else.
std::uint64_t ReadByteCount(std::string_view text);

// Returns the share as "12.3 %", rounded; empty if `total` is 0.
std::string PercentText(std::uint64_t part, std::uint64_t total);

}  // namespace tarn::sizes
