#include "components/tools/SectionChecksum.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace tarn::tools {
namespace {

std::string Number(std::uint32_t number, int size) {
  std::string bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
  return bytes;
}

// Returns a program with the sections ".boot2", with this content, and that of the names.
std::string Program(const std::string& content) {
  const std::string names("\0.boot2\0.names\0", 15);
  const auto start = static_cast<std::uint32_t>(52 + content.size() + names.size());
  const auto header = [](std::uint32_t name, std::uint32_t type, std::size_t at, std::size_t size) {
    return Number(name, 4) + Number(type, 4) + std::string(8, '\0') +
           Number(static_cast<std::uint32_t>(at), 4) + Number(static_cast<std::uint32_t>(size), 4) +
           std::string(16, '\0');
  };
  return std::string("\x7f\x45LF\1\1\1", 7) + std::string(9, '\0') + Number(2, 2) + Number(40, 2) +
         std::string(12, '\0') + Number(start, 4) + std::string(4, '\0') + Number(52, 2) +
         std::string(4, '\0') + Number(40, 2) + Number(3, 2) + Number(2, 2) + content + names +
         std::string(40, '\0') + header(1, 1, 52, content.size()) +
         header(8, 3, 52 + content.size(), names.size());
}

// The check value of this CRC is a published one: 0x0376E6E7 for the digits 1 to 9.
TEST(SectionChecksum, IsStoredInTheLastFourBytesAndNowhereElse) {
  const std::pair<std::string, std::uint32_t> rows[] = {{"123456789", 0x0376E6E7},
                                                        {"", 0xFFFFFFFF}};
  for (const auto& [covered, checksum] : rows) {
    std::string program = Program(covered + "xxxx");
    EXPECT_TRUE(StoreSectionChecksum(program, ".boot2"));
    EXPECT_EQ(program, Program(covered + Number(checksum, 4))) << covered;
  }
}

TEST(SectionChecksum, OfVectorsMakesTheSumOfTheFirstEightWordsZero) {
  std::string table = Number(0x10001000, 4) + Number(0xF0000001, 4);
  for (std::uint32_t i = 2; i < 7; ++i) table += Number(i, 4);
  std::string program = Program(table + "xxxx" + Number(9, 4));
  EXPECT_TRUE(StoreVectorChecksum(program, ".boot2"));
  EXPECT_EQ(program, Program(table + Number(0xFFFFEFEB, 4) + Number(9, 4)));
  std::string small = Program(table + "xxx");
  EXPECT_FALSE(StoreVectorChecksum(small, ".boot2"));
  EXPECT_EQ(small, Program(table + "xxx"));
}

TEST(SectionChecksum, AProgramWithoutASectionForItStaysAsItIs) {
  const struct {
    std::string program;
    const char* section;
    const char* reason;
  } rows[] = {
      {Program("123456789xxxx"), ".boot",
       "no section .boot for a checksum; the option Linker.ChecksumSection names it"},
      {Program("xxx"), ".boot2", "the section has no room for a checksum"},
      {Program("123456789xxxx").substr(0, 100), ".boot2", "not a little-endian ELF file"},
      {"", ".boot2", "not a little-endian ELF file"},
      {"!<arch>\n", ".boot2", "not a little-endian ELF file"},
  };
  for (const auto& row : rows) {
    std::string program = row.program;
    const Status stored = StoreSectionChecksum(program, row.section);
    ASSERT_FALSE(stored) << row.reason;
    EXPECT_EQ(stored.GetError().text, row.reason);
    EXPECT_EQ(program, row.program) << row.reason;
  }
}

}  // namespace
}  // namespace tarn::tools
