#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::sizes {

// A memory of the device, from the map's list of memories.
struct MapRegion {
  std::string name;
  std::uint64_t origin = 0;
  std::uint64_t length = 0;
};

// An output section.
struct MapSection {
  std::string_view name;
  std::uint64_t address = 0;
  std::uint64_t loadAddress = 0;  // of its initial content; the same unless it is copied
};

// A section of an object file that the linker has placed.
struct MapPiece {
  std::string_view input;  // its name in the object file; "*fill*" for a gap
  std::uint64_t address = 0;
  std::uint64_t size = 0;
  std::uint32_t section = 0;  // index in LinkerMap::sections
  std::uint32_t file = 0;     // index in LinkerMap::files
};

// Content of a linker's map file. Names borrow from its text.
struct LinkerMap {
  std::vector<MapRegion> regions;  // without the one that holds every address
  std::vector<MapSection> sections;
  // Object files as the map names them, also "lib.a(member.o)". The first name is empty, for pieces
  // that no file has.
  std::vector<std::string_view> files;
  std::vector<MapPiece> pieces;
};

// Reads a map file of GNU ld or of lld. Anything else yields an empty map. Linear; a line that
// can't be parsed is skipped.
LinkerMap ReadLinkerMap(std::string_view text);

// Returns true for sections that take memory of the device, judged by their name: not for debug
// information and notes. It is for maps of failed links, which have no program.
bool IsForDevice(std::string_view section);

// A region that is too small for a program, from the linker's messages.
struct RegionOverflow {
  std::string region;
  std::uint64_t bytes = 0;  // how much is too much
};

// Reads "region `NAME' overflowed by N bytes", with any quotes, and lld's "section '.text' will not
// fit in region 'NAME': overflowed by N bytes". Returns an empty name if the message is a different
// one.
RegionOverflow ReadOverflow(std::string_view message);

}  // namespace tarn::sizes
