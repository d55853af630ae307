#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::sizes {

// A symbol of a map of sdcc's linker. The map has no sizes: a symbol extends to the next one.
struct SdccSymbol {
  std::string_view name;
  std::string_view module;  // name of the source without its folder and extension
  std::uint64_t address = 0;
  std::uint64_t size = 0;
};

struct SdccArea {
  std::string_view name;
  std::uint64_t address = 0;
  std::uint64_t size = 0;
  std::string_view attributes;  // such as "REL,CON,CODE"
  std::vector<SdccSymbol> symbols;
};

// Reads the areas of a map file of sdcc's linker, in their order and without empty ones. Names
// borrow from the text. O(n log n).
std::vector<SdccArea> ReadSdccMap(std::string_view text);

// Returns the bytes of variables in the internal memory of an 8051, from the file .mem of the
// linker: rows "0x10:|a|a|S| |" with a small letter for each of them.
std::uint64_t CountDataCells(std::string_view memories);
// Memory in which the area is located: "flash", "RAM", "XRAM" or "" for none, such as the stack.
std::string_view MemoryOf(const SdccArea& area);

}  // namespace tarn::sizes
