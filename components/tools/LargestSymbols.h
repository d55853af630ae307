#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/FileSystem.h"
#include "sizes/LinkerMap.h"

namespace tarn::tools {

// A symbol of a program; a section of an object file if its symbols can't be read.
struct LargeSymbol {
  std::string name;
  std::string file;  // as in the map
  std::uint64_t size = 0;
};

// Files of a link, which may have failed.
struct LinkFiles {
  std::string map;                   // empty if there is none
  std::string program;               // doesn't exist after a failed link
  std::vector<std::string> objects;  // absolute
  std::string folder;                // to which names in the map are relative
};

// Finds the largest symbols of a link, largest first. Reads the map and those object files that can
// contain one of them; without a map, the program, else all object files. Files that are malformed
// or larger than 64 MiB are ignored.
class LargestSymbols {
 public:
  LargestSymbols(FileSystem& fileSystem, const LinkFiles& linkFiles);

  // Returns the symbols in these sections.
  std::vector<LargeSymbol> InSections(const std::function<bool(std::string_view)>& isWanted,
                                      std::size_t count);
  // Returns the symbols in a region that has overflowed, with the initial values that are stored
  // there, and the sections that the linker script reserves, such as that of heap and stack.
  std::vector<LargeSymbol> InRegion(const sizes::RegionOverflow& overflow, std::size_t count);

 private:
  using PieceFilter = std::function<bool(const sizes::MapSection&, const sizes::MapPiece&)>;
  std::vector<LargeSymbol> InMap(const PieceFilter& isWanted, std::size_t count);
  std::vector<LargeSymbol> InFiles(const std::vector<std::string>& files,
                                   const std::function<bool(std::string_view)>& isWanted,
                                   std::size_t count);
  std::string ReadFile(const std::string& path) const;
  std::vector<LargeSymbol> ReservedSections(const PieceFilter& isWanted) const;
  void AddPiece(const sizes::MapPiece& piece, std::vector<LargeSymbol>& found) const;

  FileSystem& files_;
  const LinkFiles& link_;
  std::string mapText_;
  sizes::LinkerMap map_;
};

}  // namespace tarn::tools
