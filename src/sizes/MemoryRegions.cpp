#include "sizes/MemoryRegions.h"

#include <algorithm>
#include <limits>

namespace tarn::sizes {

namespace {

constexpr std::uint64_t kEnd = std::numeric_limits<std::uint64_t>::max();
// avr-gcc places the memories of a device, which have separate addresses, at these offsets.
constexpr std::uint64_t kAvrRam = 0x800000;
constexpr std::uint64_t kAvrEeprom = 0x810000;
constexpr std::uint64_t kAvrOthers = 0x820000;

std::uint64_t LastOf(std::uint64_t start, std::uint64_t length) {
  return length == 0 || length - 1 > kEnd - start ? kEnd : start + length - 1;
}

// Returns the length of the memory that the map has between two addresses; 0 if it has none.
std::uint64_t LengthBetween(const std::vector<MapRegion>& regions, std::uint64_t start,
                            std::uint64_t end) {
  for (const MapRegion& each : regions) {
    if (each.origin >= start && each.origin < end) return each.length;
  }
  return 0;
}

std::vector<MemoryRegion> AvrRegions(const std::vector<MapRegion>& map,
                                     const DeviceMemory& device) {
  const auto choose = [&map](std::uint64_t option, std::uint64_t start, std::uint64_t end) {
    return option != 0 ? option : LengthBetween(map, start, end);
  };
  std::vector<MemoryRegion> regions{
      {"flash", 0, kAvrRam - 1, choose(device.flashSize, 0, kAvrRam)},
      {"RAM", kAvrRam, kAvrEeprom - 1, choose(device.ramSize, kAvrRam, kAvrEeprom)},
      {"EEPROM", kAvrEeprom, kAvrOthers - 1, choose(device.eepromSize, kAvrEeprom, kAvrOthers),
       device.eepromSize == 0}};
  for (const MapRegion& each : map) {
    if (each.origin < kAvrOthers) continue;
    regions.push_back(
        {each.name, each.origin, LastOf(each.origin, each.length), each.length, true});
  }
  return regions;
}

// What exceeds a memory counts as a part of it, up to the next one.
std::vector<MemoryRegion> OptionRegions(const DeviceMemory& device) {
  std::vector<MemoryRegion> regions;
  if (device.flashSize != 0) {
    regions.push_back({"flash", device.flashStart, kEnd, device.flashSize});
  }
  if (device.ramSize != 0) regions.push_back({"RAM", device.ramStart, kEnd, device.ramSize});
  if (regions.size() < 2 || device.flashStart == device.ramStart) return regions;
  auto& lower = device.flashStart < device.ramStart ? regions[0] : regions[1];
  lower.last = std::max(device.flashStart, device.ramStart) - 1;
  return regions;
}

bool Holds(const MemoryRegion& region, std::uint64_t address) {
  return address >= region.start && address <= region.last;
}

}  // namespace

std::vector<MemoryRegion> ChooseRegions(int machine, const std::vector<MapRegion>& mapRegions,
                                        const DeviceMemory& device) {
  if (machine == ElfImage::kMachineAvr) return AvrRegions(mapRegions, device);
  std::vector<MemoryRegion> regions;
  // A script may define a memory without a size, which a device doesn't have.
  for (const MapRegion& each : mapRegions) {
    if (each.length == 0) continue;
    regions.push_back({each.name, each.origin, LastOf(each.origin, each.length), each.length});
  }
  if (regions.empty()) regions = OptionRegions(device);
  if (regions.empty()) regions = {{"read-only"}, {"writable"}};
  return regions;
}

std::vector<std::size_t> FindRegions(const std::vector<MemoryRegion>& regions, int machine,
                                     const ElfSection& section) {
  std::vector<std::size_t> found;
  if (!section.isAllocated) return found;
  if (regions.front().name == "read-only") return {section.isWritable ? std::size_t{1} : 0};
  const bool isCopied = section.hasContent && section.loadAddress != section.address;
  // Newer AVR devices show their flash among the addresses of the RAM.
  const bool isShown = machine == ElfImage::kMachineAvr && isCopied && !section.isWritable;
  const auto add = [&](std::uint64_t address) {
    for (std::size_t i = 0; i < regions.size(); ++i) {
      if (!Holds(regions[i], address)) continue;
      if (std::ranges::find(found, i) == found.end()) found.push_back(i);
    }
  };
  if (!isShown) add(section.address);
  if (isCopied) add(section.loadAddress);
  return found;
}

}  // namespace tarn::sizes
