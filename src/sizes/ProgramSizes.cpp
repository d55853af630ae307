#include "sizes/ProgramSizes.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "sizes/SdccMap.h"

namespace tarn::sizes {

namespace {

std::uint64_t SumOf(const FileSize& file) {
  std::uint64_t sum = 0;
  for (const std::uint64_t each : file.byRegion) sum += each;
  return sum;
}

void SortAll(ProgramSizes& sizes) {
  std::ranges::stable_sort(sizes.files, std::ranges::greater(), SumOf);
  std::ranges::stable_sort(sizes.symbols, [](const SymbolSize& a, const SymbolSize& b) {
    return std::pair(b.size, a.address) < std::pair(a.size, b.address);
  });
}

// Removes unused regions whose size is unknown or of no interest, with the empty sections in them.
void DropUnused(ProgramSizes& sizes) {
  constexpr std::size_t kDropped = static_cast<std::size_t>(-1);
  std::vector<std::size_t> kept(sizes.regions.size(), kDropped);
  std::vector<MemoryRegion> regions;
  for (std::size_t i = 0; i < sizes.regions.size(); ++i) {
    const MemoryRegion& region = sizes.regions[i];
    if (region.used + region.reserved == 0 && (region.isMinor || region.length == 0)) continue;
    kept[i] = regions.size();
    regions.push_back(region);
  }
  for (SectionSize& each : sizes.sections) {
    for (std::size_t& region : each.regions) region = kept[region];
    std::erase(each.regions, kDropped);
  }
  for (FileSize& file : sizes.files) {
    std::vector<std::uint64_t> bytes(regions.size());
    for (std::size_t i = 0; i < file.byRegion.size(); ++i) {
      if (kept[i] != kDropped) bytes[kept[i]] = file.byRegion[i];
    }
    file.byRegion = std::move(bytes);
  }
  for (SymbolSize& each : sizes.symbols) each.region = kept[each.region];
  std::erase_if(sizes.symbols, [](const SymbolSize& each) { return each.region == kDropped; });
  sizes.regions = std::move(regions);
}

class Measurement {
 public:
  Measurement(const ElfImage& program, const LinkerMap& map, const DeviceMemory& device)
      : program_(program), map_(map) {
    sizes_.regions = ChooseRegions(program.machine, map.regions, device);
  }

  ProgramSizes Take() {
    FindEmpty();
    AddSections();
    if (!map_.pieces.empty()) AddFiles();
    AddSymbols();
    SortAll(sizes_);
    DropUnused(sizes_);
    return std::move(sizes_);
  }

 private:
  // A piece of a section that takes memory.
  struct Placed {
    std::uint64_t address = 0;
    std::uint64_t end = 0;
    std::uint32_t file = 0;
    std::size_t section = 0;  // index in sizes_.sections
  };

  // Finds the sections of the map that have neither something of an object file nor a symbol.
  void FindEmpty() {
    std::unordered_set<std::string_view> filled;
    for (const MapPiece& piece : map_.pieces) {
      if (piece.file != 0 && piece.size > 0) filled.insert(map_.sections[piece.section].name);
    }
    for (const ElfSymbol& symbol : program_.symbols) {
      filled.insert(program_.sections[symbol.section].name);
    }
    for (const MapSection& each : map_.sections) {
      if (!filled.contains(each.name)) empty_.insert(each.name);
    }
  }

  void AddSections() {
    for (const ElfSection& section : program_.sections) {
      numbers_.push_back(sizes_.sections.size());
      if (section.name.empty()) continue;
      SectionSize size{std::string(section.name), section.address, section.size, {}};
      size.regions = FindRegions(sizes_.regions, program_.machine, section);
      size.isReserved = section.isAllocated && !section.hasContent && empty_.contains(section.name);
      for (const std::size_t region : size.regions) {
        MemoryRegion& memory = sizes_.regions[region];
        (size.isReserved ? memory.reserved : memory.used) += section.size;
      }
      byName_.try_emplace(section.name, sizes_.sections.size());
      sizes_.sections.push_back(std::move(size));
    }
  }

  // Bytes of a section that no piece has are the linker's own or gaps, and so are pieces beyond the
  // size of their section, which a malformed map claims.
  void AddFiles() {
    std::vector<FileSize> files(map_.files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
      files[i].name = map_.files[i];
      files[i].byRegion.resize(sizes_.regions.size());
    }
    std::vector<std::uint64_t> rest;
    for (const SectionSize& each : sizes_.sections) rest.push_back(each.size);
    for (const MapPiece& piece : map_.pieces) {
      const auto found = byName_.find(map_.sections[piece.section].name);
      if (found == byName_.end()) continue;
      const SectionSize& section = sizes_.sections[found->second];
      if (section.isReserved) continue;
      const std::uint64_t size = std::min(piece.size, rest[found->second]);
      rest[found->second] -= size;
      for (const std::size_t region : section.regions) files[piece.file].byRegion[region] += size;
      if (section.regions.empty() || size == 0) continue;
      placed_.push_back({piece.address, piece.address + size, piece.file, found->second});
    }
    for (std::size_t i = 0; i < rest.size(); ++i) {
      if (sizes_.sections[i].isReserved) continue;
      for (const std::size_t region : sizes_.sections[i].regions) {
        files[0].byRegion[region] += rest[i];
      }
    }
    std::erase_if(files, [](const FileSize& each) {
      return std::ranges::all_of(each.byRegion, [](std::uint64_t bytes) { return bytes == 0; });
    });
    sizes_.files = std::move(files);
    std::ranges::sort(placed_, {}, &Placed::address);
  }

  std::string FileAt(std::uint64_t address, std::size_t section) const {
    auto after = std::ranges::upper_bound(placed_, address, {}, &Placed::address);
    // Sections may overlap, such as the memories of an AVR; there are few of them.
    constexpr int kMostSteps = 8;
    for (int step = 0; step < kMostSteps && after != placed_.begin(); ++step) {
      --after;
      if (after->section != section || address >= after->end) continue;
      return std::string(map_.files[after->file]);
    }
    return {};
  }

  void AddSymbols() {
    for (const ElfSymbol& symbol : program_.symbols) {
      if (!program_.sections[symbol.section].isAllocated) continue;
      const std::size_t section = numbers_[symbol.section];
      if (section >= sizes_.sections.size() || sizes_.sections[section].regions.empty()) continue;
      sizes_.symbols.push_back({std::string(symbol.name), sizes_.sections[section].name,
                                FileAt(symbol.address, section), symbol.address, symbol.size,
                                symbol.isFunction, sizes_.sections[section].regions.front()});
    }
  }

  const ElfImage& program_;
  const LinkerMap& map_;
  ProgramSizes sizes_;
  std::vector<std::size_t> numbers_;  // of the program's sections in `sizes_`
  std::unordered_map<std::string_view, std::size_t> byName_;
  std::unordered_set<std::string_view> empty_;  // names of sections
  std::vector<Placed> placed_;                  // by address
};

}  // namespace

ProgramSizes MeasureProgram(const ElfImage& program, const LinkerMap& map,
                            const DeviceMemory& device) {
  return Measurement(program, map, device).Take();
}

ProgramSizes MeasureSdcc(std::string_view map, const DeviceMemory& device,
                         std::string_view memories) {
  ProgramSizes sizes;
  sizes.regions = {{"flash", 0, 0, device.flashSize}, {"RAM", 0, 0, device.ramSize}, {"XRAM"}};
  std::unordered_map<std::string_view, std::size_t> files;
  const auto fileOf = [&](std::string_view name) -> FileSize& {
    const auto [place, isNew] = files.try_emplace(name, sizes.files.size());
    if (isNew) sizes.files.push_back({std::string(name), std::vector<std::uint64_t>(3)});
    return sizes.files[place->second];
  };
  std::vector<SdccArea> areas = ReadSdccMap(map);
  for (SdccArea& area : areas) {
    if (area.name == "DSEG" && !memories.empty()) area.size = CountDataCells(memories);
    SectionSize section{std::string(area.name), area.address, area.size, {}};
    const std::string_view memory = MemoryOf(area);
    const auto region = std::ranges::find(sizes.regions, memory, &MemoryRegion::name);
    if (region != sizes.regions.end()) {
      const auto number = static_cast<std::size_t>(region - sizes.regions.begin());
      section.regions.push_back(number);
      region->used += area.size;
      std::uint64_t rest = area.size;
      for (const SdccSymbol& each : area.symbols) {
        const std::uint64_t size = std::min(each.size, rest);
        rest -= size;
        fileOf(each.module).byRegion[number] += size;
        sizes.symbols.push_back({std::string(each.name), section.name, std::string(each.module),
                                 each.address, size, number == 0, number});
      }
      if (rest > 0) fileOf({}).byRegion[number] += rest;
    }
    sizes.sections.push_back(std::move(section));
  }
  SortAll(sizes);
  DropUnused(sizes);
  return sizes;
}

void SortStack(ProgramSizes& sizes) {
  std::ranges::stable_sort(sizes.stack, std::ranges::greater(), &FunctionStack::bytes);
}

}  // namespace tarn::sizes
