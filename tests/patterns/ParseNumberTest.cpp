#include "patterns/ParseNumber.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

TEST(ParseNumber, ReadsWhatAttributesHold) {
  const std::pair<const char*, std::int32_t> rows[] = {
      {nullptr, 0x7FFFFFFF},
      {"", 0x7FFFFFFF},
      {" ", 0},
      {"12", 12},
      {" \t\r\n\v\f-12x", -12},
      {"+7", 7},
      {"2147483648", INT32_MIN},
      {"4294967295", -1},
      {"-2147483648", INT32_MIN},
      {"0x1F", 31},
      {"0xaBcDef12", static_cast<std::int32_t>(0xABCDEF12)},
      {"0xABCDEF123", static_cast<std::int32_t>(0xABCDEF12)},
      {"0X1F", 0},
      {"abc0x10", 16},
      {"-0x10", 16},
      {"0x", 0},
      {"0xg1", 0},
      {"0x1g2", 1},
      {"0x0x12", 0},
      {"00x12", 18},
  };
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(ParseNumber(text), expected) << (text ? text : "null");
  }
}

}  // namespace
}  // namespace tarn
