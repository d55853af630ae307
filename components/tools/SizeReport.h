#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// Formats of size information.
enum class SizeFormat {
  None,
  Sections,  // one line per section: name, size, address (size -A)
  SdccMap,   // memory summary of sdcc's linker for the 8051 (.mem)
  SdccAreas  // areas in the map file of sdcc's linker (.map)
};

// Returns sizes in bytes by section name. SdccMap uses the names flash, xram, pram, iram (internal
// RAM used by variables and registers) and stack (internal RAM left for it).
std::map<std::string, std::uint64_t> ReadSizes(SizeFormat format, std::string_view text);

// One figure of the summary: the sum of some sections, with a label.
struct SizeSum {
  std::string label;
  std::vector<std::string> sections;  // a name, or a prefix followed by a star
  bool skipZero = false;
};

// Returns a summary such as "flash 924 B, RAM 18 B"; empty if `sizes` is.
std::string DescribeSizes(const std::map<std::string, std::uint64_t>& sizes,
                          const std::vector<SizeSum>& sums);

}  // namespace tarn::tools
