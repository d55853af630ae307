#include "components/tools/Uf2.h"

#include <gtest/gtest.h>

namespace tarn::tools {
namespace {

std::string Number(std::uint32_t number, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
  return bytes;
}

std::string Words(std::initializer_list<std::uint32_t> words) {
  std::string bytes;
  for (const std::uint32_t each : words) bytes += Number(each, 4);
  return bytes;
}

// Returns a program with one loadable segment that runs in RAM and is stored at `address`.
std::string Program(std::uint32_t address, const std::string& content) {
  const auto size = static_cast<std::uint32_t>(content.size());
  return std::string("\x7f\x45LF\1\1\1", 7) + std::string(9, '\0') + Number(2, 2) + Number(40, 2) +
         Words({1, address, 52, 0, 0}) + Number(52, 2) + Number(32, 2) + Number(1, 2) +
         std::string(6, '\0') + Words({1, 84, 0x20000000, address, size, size, 5, 4}) + content;
}

std::string Block(std::uint32_t address, std::uint32_t number, const std::string& page) {
  return Words({0x0A324655, 0x9E5D5157, 0x2000, address, 256, number, 2, 0xE48BFF56}) + page +
         std::string(476 - 256, '\0') + Words({0x0AB16F30});
}

TEST(Uf2, ASegmentBecomesPagesAtItsAddressInFlash) {
  const std::string content = std::string(128, 'a') + std::string(172, 'b');
  const auto converted = ConvertToUf2(Program(0x10000080, content), 0xE48BFF56);
  ASSERT_TRUE(converted);
  EXPECT_EQ(*converted, Block(0x10000000, 0, std::string(128, '\0') + std::string(128, 'a')) +
                            Block(0x10000100, 1, std::string(172, 'b') + std::string(84, '\0')));
}

TEST(Uf2, WhatIsNoCompleteProgramIsRefused) {
  const std::string program = Program(0, "abc");
  const struct {
    std::string bytes;
    const char* reason;
  } rows[] = {
      {"", "not a 32-bit little-endian ELF file"},
      {program.substr(0, program.size() - 1), "the ELF file is truncated"},
      {program.substr(0, 60), "the program is empty"},
      {Program(0, ""), "the program is empty"},
  };
  for (const auto& row : rows) {
    const auto converted = ConvertToUf2(row.bytes, 0);
    ASSERT_FALSE(converted) << row.reason;
    EXPECT_EQ(converted.GetError().text, row.reason);
  }
}

}  // namespace
}  // namespace tarn::tools
