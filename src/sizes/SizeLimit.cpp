#include "sizes/SizeLimit.h"

#include <array>
#include <charconv>
#include <limits>

#include "sizes/TextScan.h"

namespace tarn::sizes {

namespace {

struct Unit {
  std::string_view name;
  std::uint64_t bytes;
};
constexpr std::array<Unit, 7> kUnits{{{"B", 1},
                                      {"K", 1024},
                                      {"KB", 1024},
                                      {"KiB", 1024},
                                      {"M", 1024 * 1024},
                                      {"MB", 1024 * 1024},
                                      {"MiB", 1024 * 1024}}};

}  // namespace

SizeLimit ReadSizeLimit(std::string_view text, std::uint64_t total) {
  constexpr const char* kMalformed =
      "is neither a percentage nor a number of bytes with a unit (90, 90 %, 28 KiB, 30000 B)";
  text = Trimmed(text);
  std::uint64_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc()) return {{}, kMalformed};
  const std::string_view unit =
      Trimmed(text.substr(static_cast<std::size_t>(read.ptr - text.data())));
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  if (unit.empty() || unit == "%") {
    if (total == 0) return {{}, "is a percentage, but the size of the memory is unknown"};
    if (number > 100)
      return {{}, "is more than 100 %; a number of bytes has a unit (28 KiB, 30000 B)"};
    if (total > kMost) return {{}, kMalformed};
    return {total * number / 100, {}};
  }
  for (const Unit& each : kUnits) {
    if (each.name == unit && number <= kMost) return {number * each.bytes, {}};
  }
  return {{}, kMalformed};
}

std::uint64_t ReadByteCount(std::string_view text) {
  text = Trimmed(text);
  const bool isHex = text.starts_with("0x") || text.starts_with("0X");
  if (isHex) text.remove_prefix(2);
  return ParseWhole<std::uint64_t>(text, isHex ? 16 : 10).value_or(0);
}

std::string PercentText(std::uint64_t part, std::uint64_t total) {
  if (total == 0) return {};
  const double tenths = static_cast<double>(part) / static_cast<double>(total) * 1000 + 0.5;
  if (tenths >= 1e9) return "> 100 %";
  const auto number = static_cast<std::uint64_t>(tenths);
  return std::to_string(number / 10) + "." + std::to_string(number % 10) + " %";
}

}  // namespace tarn::sizes
