#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sizes/ElfImage.h"
#include "sizes/LinkerMap.h"
#include "sizes/MemoryRegions.h"
#include "sizes/StackUsage.h"

namespace tarn::sizes {

struct SectionSize {
  std::string name;
  std::uint64_t address = 0;
  std::uint64_t size = 0;
  std::vector<std::size_t> regions;  // in which it takes memory; empty: it takes none
  bool isReserved = false;           // without content: what the linker script keeps free
};

struct FileSize {
  std::string name;                     // as in the map; empty for gaps and the linker's own code
  std::vector<std::uint64_t> byRegion;  // bytes in each region
};

struct SymbolSize {
  std::string name;  // as in the program
  std::string section;
  std::string file;  // object file; empty if unknown
  std::uint64_t address = 0;
  std::uint64_t size = 0;
  bool isFunction = false;
  std::size_t region = 0;   // of its address
  std::string source = {};  // file of its definition, and the line; empty if unknown
  int line = 0;
};

// Sizes of a linked program.
struct ProgramSizes {
  std::vector<MemoryRegion> regions;  // all that are used or have a known size
  std::vector<SectionSize> sections;  // all in the program, in its order
  std::vector<FileSize> files;        // largest first
  std::vector<SymbolSize> symbols;    // largest first
  std::vector<FunctionStack> stack;   // largest first
};

// Combines a program with its map. Sections that the linker script only reserves, with nothing of
// an object file in them, don't count as used; without a map there are none. The sizes of sections
// and symbols are those of the program; the map assigns them to files and adds the device's
// memories. Without a map there are no files. O(n log n) in sections, pieces and symbols.
ProgramSizes MeasureProgram(const ElfImage& program, const LinkerMap& map,
                            const DeviceMemory& device);

// Returns the sizes in a map file of sdcc's linker; no sections if it is anything else. `memories`
// is its file .mem for an 8051, or empty: in the map, the area of the internal variables (DSEG)
// always has 128 bytes.
ProgramSizes MeasureSdcc(std::string_view map, const DeviceMemory& device,
                         std::string_view memories = {});

// Sorts what `sizes.stack` has, largest first.
void SortStack(ProgramSizes& sizes);

}  // namespace tarn::sizes
