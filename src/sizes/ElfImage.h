#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tarn::sizes {

// Names borrow from the bytes of the file.
struct ElfSection {
  std::string_view name;
  std::uint64_t address = 0;      // where the program uses it
  std::uint64_t loadAddress = 0;  // where its content is stored; the same unless it is copied
  std::uint64_t size = 0;
  bool isAllocated = false;  // takes memory of the device
  bool isWritable = false;
  bool hasContent = false;  // its content is stored in the file
};

struct ElfSymbol {
  std::string_view name;
  std::uint64_t address = 0;  // without the bit that marks Thumb code
  std::uint64_t size = 0;
  std::size_t section = 0;  // index in ElfImage::sections
  bool isFunction = false;
};

struct ElfImage {
  static constexpr int kMachineAvr = 83;
  int machine = 0;
  std::vector<ElfSection> sections;  // with the first one, which is empty
  std::vector<ElfSymbol> symbols;    // defined in a section, with a size
};

// Reads sections and symbols of an ELF file of 32 or 64 bits in either byte order: a program or an
// object file. Returns nullopt if the bytes are anything else or contradict themselves. Linear in
// the bytes, in time and memory: a name that is not terminated within 4096 bytes is cut.
std::optional<ElfImage> ReadElf(std::string_view bytes);

}  // namespace tarn::sizes
