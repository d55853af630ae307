#include "components/tools/LargestSymbols.h"

#include <algorithm>

#include "components/tools/ToolPaths.h"
#include "platform/paths/Paths.h"
#include "sizes/ElfImage.h"

namespace tarn::tools {

namespace {

constexpr std::uint64_t kLargestFile = 64 << 20;
constexpr std::size_t kMostObjects = 200;

void KeepLargest(std::vector<LargeSymbol>& symbols, std::size_t count) {
  std::ranges::stable_sort(symbols, std::ranges::greater(), &LargeSymbol::size);
  if (symbols.size() > count) symbols.resize(count);
}

// Returns true for pieces without initial values.
bool IsZeroed(std::string_view input) {
  return input.starts_with(".bss") || input.starts_with(".sbss") || input.starts_with(".noinit") ||
         input == "COMMON";
}

}  // namespace

LargestSymbols::LargestSymbols(FileSystem& fileSystem, const LinkFiles& linkFiles)
    : files_(fileSystem),
      link_(linkFiles),
      mapText_(linkFiles.map.empty() ? std::string() : ReadFile(linkFiles.map)),
      map_(sizes::ReadLinkerMap(mapText_)) {}

std::string LargestSymbols::ReadFile(const std::string& path) const {
  const auto status = files_.ExamineExactly(path);
  if (!status || status->size > kLargestFile) return {};
  auto bytes = files_.ReadWholeFile(path);
  return bytes ? std::move(*bytes) : std::string();
}

std::vector<LargeSymbol> LargestSymbols::InSections(
    const std::function<bool(std::string_view)>& isWanted, std::size_t count) {
  const auto isPieceWanted = [&](const sizes::MapSection& section, const sizes::MapPiece&) {
    return isWanted(section.name);
  };
  if (!map_.pieces.empty()) return InMap(isPieceWanted, count);
  return InFiles({link_.program}, isWanted, count);
}

std::vector<LargeSymbol> LargestSymbols::InRegion(const sizes::RegionOverflow& overflow,
                                                  std::size_t count) {
  const auto region = std::ranges::find(map_.regions, overflow.region, &sizes::MapRegion::name);
  if (region == map_.regions.end() || map_.pieces.empty()) {
    return InFiles(link_.objects, sizes::IsForDevice, count);
  }
  const auto holds = [&](std::uint64_t address) {
    return address >= region->origin && address - region->origin < region->length + overflow.bytes;
  };
  const auto isWanted = [&](const sizes::MapSection& section, const sizes::MapPiece& piece) {
    const bool isStored = section.loadAddress != section.address && !IsZeroed(piece.input) &&
                          holds(piece.address - section.address + section.loadAddress);
    return sizes::IsForDevice(section.name) && (holds(piece.address) || isStored);
  };
  std::vector<LargeSymbol> found = InMap(isWanted, count);
  for (LargeSymbol& each : ReservedSections(isWanted)) found.push_back(std::move(each));
  KeepLargest(found, count);
  return found;
}

// Returns the sections with gaps, but nothing of an object file.
std::vector<LargeSymbol> LargestSymbols::ReservedSections(const PieceFilter& isWanted) const {
  std::vector<std::uint64_t> gaps(map_.sections.size());
  std::vector<bool> hasContent(map_.sections.size());
  for (const sizes::MapPiece& piece : map_.pieces) {
    if (piece.file != 0 && piece.size > 0) hasContent[piece.section] = true;
    if (piece.file == 0 && isWanted(map_.sections[piece.section], piece)) {
      gaps[piece.section] += piece.size;
    }
  }
  std::vector<LargeSymbol> reserved;
  for (std::size_t i = 0; i < gaps.size(); ++i) {
    if (gaps[i] == 0 || hasContent[i]) continue;
    reserved.push_back({std::string(map_.sections[i].name), "", gaps[i]});
  }
  return reserved;
}

// A symbol isn't larger than its piece, so pieces are read by size until the rest can't contain one
// of the largest symbols.
std::vector<LargeSymbol> LargestSymbols::InMap(const PieceFilter& isWanted, std::size_t count) {
  std::vector<const sizes::MapPiece*> pieces;
  for (const sizes::MapPiece& piece : map_.pieces) {
    if (piece.file != 0 && isWanted(map_.sections[piece.section], piece)) pieces.push_back(&piece);
  }
  std::ranges::stable_sort(pieces, [](auto* a, auto* b) { return a->size > b->size; });
  std::vector<LargeSymbol> found;
  for (std::size_t i = 0; i < std::min(pieces.size(), kMostObjects); ++i) {
    if (found.size() >= count && pieces[i]->size <= found[count - 1].size) break;
    AddPiece(*pieces[i], found);
    KeepLargest(found, std::max(count, std::size_t{1}));
  }
  return found;
}

void LargestSymbols::AddPiece(const sizes::MapPiece& piece, std::vector<LargeSymbol>& found) const {
  const std::string file(map_.files[piece.file]);
  const std::string bytes = ReadFile(AbsolutePath(&files_, link_.folder, file));
  const auto object = sizes::ReadElf(bytes);
  std::size_t count = 0;
  if (object) {
    for (const sizes::ElfSymbol& symbol : object->symbols) {
      const bool isCommon = piece.input == "COMMON";
      if (isCommon || object->sections[symbol.section].name != piece.input) continue;
      if (symbol.size > piece.size) continue;
      found.push_back({std::string(symbol.name), file, symbol.size});
      ++count;
    }
  }
  if (count == 0) found.push_back({std::string(piece.input), file, piece.size});
}

std::vector<LargeSymbol> LargestSymbols::InFiles(
    const std::vector<std::string>& files, const std::function<bool(std::string_view)>& isWanted,
    std::size_t count) {
  std::vector<LargeSymbol> found;
  for (std::size_t i = 0; i < std::min(files.size(), kMostObjects); ++i) {
    const std::string bytes = ReadFile(files[i]);
    const auto image = sizes::ReadElf(bytes);
    if (!image) continue;
    const std::string name = files[i] == link_.program ? std::string() : FileNameOf(files[i]);
    for (const sizes::ElfSymbol& symbol : image->symbols) {
      const sizes::ElfSection& section = image->sections[symbol.section];
      if (!section.isAllocated || !isWanted(section.name)) continue;
      found.push_back({std::string(symbol.name), name, symbol.size});
    }
    KeepLargest(found, count);
  }
  return found;
}

}  // namespace tarn::tools
