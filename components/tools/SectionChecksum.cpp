#include "components/tools/SectionChecksum.h"

#include <cstdint>
#include <optional>

#include "components/tools/ObjectSections.h"

namespace tarn::tools {

namespace {

constexpr std::size_t kChecksumSize = 4;

std::uint32_t Crc32(std::string_view bytes) {
  constexpr std::uint32_t kPolynomial = 0x04C11DB7;
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char byte : bytes) {
    crc ^= static_cast<std::uint32_t>(static_cast<unsigned char>(byte)) << 24;
    for (int bit = 0; bit < 8; ++bit) {
      const bool isSet = (crc & 0x80000000) != 0;
      crc = crc << 1 ^ (isSet ? kPolynomial : 0);
    }
  }
  return crc;
}

// Returns the only section of this name that has room for a checksum.
Result<std::string_view> FindContent(std::string_view program, std::string_view section) {
  constexpr std::string_view kElfMagic("\x7f\x45LF", 4);
  constexpr std::size_t kByteOrder = 5;
  const bool isLittleEndian = program.size() > kByteOrder && program[kByteOrder] == 1;
  std::optional<std::string_view> found;
  const bool isRead = program.starts_with(kElfMagic) && isLittleEndian &&
                      ForEachSection(program, [&](std::string_view name, auto content) {
                        if (name == section && content) found = content;
                      });
  if (!isRead) return Error{ErrorCode::Unsupported, "not a little-endian ELF file", {}};
  if (!found) {
    return Error{ErrorCode::NotFound,
                 "no section " + std::string(section) +
                     " for a checksum; the option Linker.ChecksumSection names it",
                 {}};
  }
  if (found->size() < kChecksumSize) {
    return Error{ErrorCode::Unsupported, "the section has no room for a checksum", {}};
  }
  return *found;
}

}  // namespace

Status StoreSectionChecksum(std::string& program, std::string_view section) {
  const Result<std::string_view> content = FindContent(program, section);
  if (!content) return content.GetError();
  const std::size_t covered = content->size() - kChecksumSize;
  const std::uint32_t crc = Crc32(content->substr(0, covered));
  const auto start = static_cast<std::size_t>(content->data() - program.data()) + covered;
  for (std::size_t i = 0; i < kChecksumSize; ++i) {
    program[start + i] = static_cast<char>(crc >> (8 * i) & 0xFF);
  }
  return {};
}

}  // namespace tarn::tools
