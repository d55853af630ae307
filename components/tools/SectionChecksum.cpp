#include "components/tools/SectionChecksum.h"

#include <cstdint>
#include <optional>

#include "components/tools/ObjectSections.h"

namespace tarn::tools {

namespace {

constexpr std::size_t kWordSize = 4;

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

// Returns the only section of this name that has at least this size.
Result<std::string_view> FindContent(std::string_view program, std::string_view section,
                                     std::size_t size) {
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
  if (found->size() < size) {
    return Error{ErrorCode::Unsupported, "the section has no room for a checksum", {}};
  }
  return *found;
}

void StoreWord(std::string& program, std::size_t start, std::uint32_t word) {
  for (std::size_t i = 0; i < kWordSize; ++i) {
    program[start + i] = static_cast<char>(word >> (8 * i) & 0xFF);
  }
}

std::uint32_t WordAt(std::string_view content, std::size_t start) {
  std::uint32_t word = 0;
  for (std::size_t i = kWordSize; i-- > 0;) {
    word = word << 8 | static_cast<unsigned char>(content[start + i]);
  }
  return word;
}

}  // namespace

Status StoreSectionChecksum(std::string& program, std::string_view section) {
  const Result<std::string_view> content = FindContent(program, section, kWordSize);
  if (!content) return content.GetError();
  const std::size_t covered = content->size() - kWordSize;
  const auto start = static_cast<std::size_t>(content->data() - program.data());
  StoreWord(program, start + covered, Crc32(content->substr(0, covered)));
  return {};
}

Status StoreVectorChecksum(std::string& program, std::string_view section) {
  constexpr std::size_t kCovered = 7 * kWordSize;
  const Result<std::string_view> content = FindContent(program, section, kCovered + kWordSize);
  if (!content) return content.GetError();
  std::uint32_t sum = 0;
  for (std::size_t at = 0; at < kCovered; at += kWordSize) sum += WordAt(*content, at);
  const auto start = static_cast<std::size_t>(content->data() - program.data());
  StoreWord(program, start + kCovered, 0 - sum);
  return {};
}

}  // namespace tarn::tools
