#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sizes/ElfImage.h"
#include "sizes/LinkerMap.h"

namespace tarn::sizes {

// Memories of the device according to the project's options; 0 if unknown.
struct DeviceMemory {
  std::uint64_t flashStart = 0, flashSize = 0;
  std::uint64_t ramStart = 0, ramSize = 0;
  std::uint64_t eepromSize = 0;
};

struct MemoryRegion {
  std::string name;
  std::uint64_t start = 0;
  std::uint64_t last = 0;      // last address that is counted
  std::uint64_t length = 0;    // 0 if unknown
  bool isMinor = false;        // of interest only if it is used, such as the fuses of a device
  std::uint64_t used = 0;      // by code and variables
  std::uint64_t reserved = 0;  // by the linker script, for heap and stack
};

// Returns the memories of a program's device, without any use. AVR's linkers know the memories of a
// whole family only, so the options take precedence there. Elsewhere the map's memories do, then
// those of the options. A program for an operating system has "read-only" and "writable" instead.
std::vector<MemoryRegion> ChooseRegions(int machine, const std::vector<MapRegion>& mapRegions,
                                        const DeviceMemory& device);

// Returns the regions in which a section takes memory: first that of its address, then that from
// which its initial content is copied.
std::vector<std::size_t> FindRegions(const std::vector<MemoryRegion>& regions, int machine,
                                     const ElfSection& section);

}  // namespace tarn::sizes
