#include "project/CommonEnd.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarn {
namespace {

// Each text with the end that is found for it; "-" if there is none.
TEST(CommonEnd, AnEndIsFoundOnceTwoTextsHaveIt) {
  struct Row {
    const char* text;
    const char* end;
  };
  const std::vector<Row> rows{
      {"", "-"},
      {"a1:the same", "-"},
      {"b2:the same", ":the same"},
      {"c:the same", ":the same"},
      {":the same", ":the same"},
      {"very much more:the same", ":the same"},
      {"he same", "he same"},
      {"other", "-"},
      {"x-other", "other"},
      {"other", "other"},
      {"a text that only has its end in common: other", "other"},
      {"", "-"},
      {"a long text, and its end", "-"},
      {"another long text, of which less than half is its end", "-"},
  };
  CommonEnd common;
  for (const Row& row : rows) {
    const auto end = common.Find(row.text);
    EXPECT_EQ(end == nullptr ? "-" : *end, row.end) << row.text;
  }
}

TEST(CommonEnd, TextsWithTheSameEndShareIt) {
  CommonEnd common;
  common.Find("1 the same");
  const auto first = common.Find("2 the same");
  EXPECT_EQ(common.Find("3 the same"), first);
  EXPECT_NE(first, nullptr);
}

}  // namespace
}  // namespace tarn
