#include "platform/text/Text.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

#include "support/TestEnvironment.h"

namespace tarn {
namespace {

TEST(Text, CaseFoldsAsciiOnlyAndOrdersByBytes) {
  const struct {
    const char* name;
    std::string_view a, b;
    int sign;
  } rows[] = {
      {"same letters", "MAIN.c", "main.C", 0},
      {"umlaut bytes stay apart", "\xC4", "\xE4", -1},
      {"high bytes count unsigned", "\xE4", "z", 1},
      {"[ lies between the cases", "[", "a", -1},
      {"@ and ` are no letters", "@", "`", -1},
      {"prefix is smaller", "ab", "ABC", -1},
      {"empty is smallest", "", "a", -1},
  };
  for (const auto& row : rows) {
    const int order = CompareNoCase(row.a, row.b);
    EXPECT_EQ((order > 0) - (order < 0), row.sign) << row.name;
    EXPECT_EQ(EqualNoCase(row.a, row.b), row.sign == 0) << row.name;
  }
  EXPECT_EQ(FoldCase("\xC4Z[@"), "\xC4z[@");
  EXPECT_TRUE(StartsWithNoCase("Project.x", "pRO"));
  EXPECT_FALSE(StartsWithNoCase("Pr", "pro"));
  EXPECT_TRUE(EndsWithNoCase("a.TPRJ", ".tprj"));
  EXPECT_FALSE(EndsWithNoCase("prj", ".tprj"));
}

TEST(Text, DecimalWrapsInsteadOfOverflowing) {
  const std::pair<const char*, std::int32_t> rows[] = {
      {nullptr, 0},
      {"", 0},
      {"x1", 0},
      {" \t\r\n\v\f12abc", 12},
      {"-12", -12},
      {"+7", 7},
      {"- 7", 0},
      {"4294967295", -1},
      {"-2147483648", INT32_MIN},
      {"99999999999999999999", 1661992959},
  };
  for (const auto& [text, value] : rows) EXPECT_EQ(ParseDecimal(text), value) << OrEmpty(text);
}

TEST(Text, Int64TellsNoNumberFromZero) {
  const std::pair<const char*, std::optional<std::int64_t>> rows[] = {
      {"", {}},
      {"-", {}},
      {"+-3", {}},
      {" 0", 0},
      {"+5x", 5},
      {"-3 4", -3},
      {"9223372036854775807", INT64_MAX},
      {"-9223372036854775808", INT64_MIN},
      {"9223372036854775808", {}},
  };
  for (const auto& [text, value] : rows) EXPECT_EQ(ParseInt64(text), value) << text;
}

TEST(Text, FormatFromADataFileCannotHarm) {
  const std::vector<std::string> two = {"one", "%s"};
  const std::pair<const char*, const char*> rows[] = {
      {"a %s b %d c", "a one b %s c"}, {"%s%s%s|", "one%s|"},      {"100%% %s", "100% one"},
      {"%n%5d%x", "%n%5d%x"},          {"ends in %", "ends in %"},
  };
  for (const auto& [format, text] : rows) EXPECT_EQ(FormatMessageText(format, two), text);
}

TEST(Text, SplitAndReplaceKeepEmptyPiecesAndEndings) {
  EXPECT_TRUE(Split("", ';').empty());
  EXPECT_EQ(Split(";a;;", ';'), (std::vector<std::string_view>{"", "a", "", ""}));
  EXPECT_TRUE(SplitQuotedList("").empty());
  EXPECT_EQ(SplitQuotedList(R"("a,b","c"d","","e)"),
            (std::vector<std::string>{"a,b", "c\"d", "", "e"}));
  EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(ReplaceAll("a", "", "b"), "a");
  EXPECT_EQ(ReplaceAll("x..x", ".", "..."), "x......x");
  EXPECT_EQ(Trim(" \t\n\v\f\r a b \r"), "a b");
  EXPECT_EQ(Trim(" \xA0 "), "\xA0");
  EXPECT_EQ(Trim(" \n"), "");
}

TEST(Text, LocalTimeFollowsTheZoneAndSurvivesAnyNumber) {
  const testing::ScopedVariable zone("TZ", "UTC-2");
  tzset();
  EXPECT_EQ(FormatLocalTime(86400), "01/02/70 02:00:00");
  EXPECT_EQ(FormatLocalTime(INT64_MAX), "");
}

}  // namespace
}  // namespace tarn
