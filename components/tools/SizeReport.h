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
  // Options with the size of the memory and with the limit; empty: there is none.
  std::string totalOption = {};
  std::string maxOption = {};
};

// Values of the two options for one run.
struct SizeBound {
  std::string total;
  std::string max;
};

// Returns a summary such as "flash 924 B (2.8 %), RAM 18 B"; empty if `sizes` is. There is a
// percentage if the size of the memory is known. `bounds` is as long as `sums`, or empty.
std::string DescribeSizes(const std::map<std::string, std::uint64_t>& sizes,
                          const std::vector<SizeSum>& sums,
                          const std::vector<SizeBound>& bounds = {});

// Returns true if the section is one of these; see SizeSum.
bool IsInSections(const std::string& name, const std::vector<std::string>& sections);

// A sum that exceeds its limit, or whose limit can't be checked.
struct ExceededSize {
  std::size_t sum = 0;
  std::string text;  // for the user, such as "flash is 12 B too large: ..."
};

// Compares the sums with their limits. Limits that are empty are not checked.
std::vector<ExceededSize> FindExceeded(const std::map<std::string, std::uint64_t>& sizes,
                                       const std::vector<SizeSum>& sums,
                                       const std::vector<SizeBound>& bounds);

}  // namespace tarn::tools
