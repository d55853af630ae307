#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// How sizes are told.
enum class SizeFormat {
  None,
  Sections,  // one line a section: name, size, address (size -A)
  SdccMap,   // the memory overview of sdcc's linker for the 8051 (.mem)
  SdccAreas  // the areas in the map of sdcc's linker (.map)
};

// Sizes in bytes by section name. SdccMap gives the names flash, xram, pram, iram (what variables
// and registers take of the internal RAM) and stack (what is left for it).
std::map<std::string, std::uint64_t> ReadSizes(SizeFormat format, std::string_view text);

// One figure of the short text: the sum of some sections under a label.
struct SizeSum {
  std::string label;
  std::vector<std::string> sections;  // a name, or the start of names with a star behind it
  bool skipZero = false;
};

// The short text, such as "flash 924 B, RAM 18 B"; empty when `sizes` is.
std::string DescribeSizes(const std::map<std::string, std::uint64_t>& sizes,
                          const std::vector<SizeSum>& sums);

}  // namespace tarn::tools
