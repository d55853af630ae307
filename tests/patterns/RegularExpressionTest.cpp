#include "patterns/RegularExpression.h"

#include <gtest/gtest.h>

#include "patterns/PatternError.h"

namespace tarn {
namespace {

// Returns the groups that took part, each as number, start and string, or "no" if nothing matches.
std::string Match(CRegularExpression& expression, const char* subject) {
  if (!expression.Match(subject)) return "no";
  std::string groups;
  for (int group = 0; group < 10; ++group) {
    if (expression.SubStart(group) < 0) continue;
    const std::string text = expression.SubString(group);
    EXPECT_EQ(expression.SubLength(group), static_cast<int>(text.size()));
    groups += (group == 0 ? "" : " ") + std::to_string(group) + "@" +
              std::to_string(expression.SubStart(group)) + "'" + text + "'";
  }
  return groups;
}

TEST(RegularExpression, FirstAlternativeThatLetsTheRestMatchWins) {
  struct Row {
    const char* pattern;
    const char* subject;
    const char* groups;
  };
  const Row rows[] = {
      {"", "abc", "0@0''"},
      {"", "", "0@0''"},
      {"a|", "b", "0@0''"},
      {"()?x", "x", "0@0'x' 1@0''"},
      {"abc*", "abccc", "0@0'abccc'"},
      {"a^b", "a^b", "no"},
      {"a^b", "a\nb", "no"},
      {"b$", "ab\nb", "0@3'b'"},
      {"x.*", "x1\n2", "0@0'x1\n2'"},
      {"\\*", "a*", "0@1'*'"},
      {"\\q", "q", "0@0'q'"},
      {"(a|ab)(c|bcd)", "abcd", "0@0'abcd' 1@0'a' 2@1'bcd'"},
      {"(a)*", "aaa", "0@0'aaa' 1@2'a'"},
      {"(a)|(b)", "b", "0@0'b' 2@0'b'"},
      {"((a)|b)*", "ab", "0@0'ab' 1@1'b' 2@0'a'"},
      {"(a|(b))+c", "abx ac", "0@4'ac' 1@4'a'"},
      {"a\\>", "a", "0@0'a'"},
      {"a\\>", "ab a_ a-", "0@6'a'"},
      {"\\<a", "_a ba a", "0@6'a'"},
      {"\\>", "ab", "0@2''"},
      {"[\xE0-\xEF]+", "a\xE4\xDF", "0@1'\xE4'"},
      {"[^-]-", "\xE4-", "0@0'\xE4-'"},
      {"b.x|[ab]x", "abcxbx", "0@1'bcx'"},
      {"a[^a]*a", "xabbaba", "0@1'abba'"},
  };
  for (const Row& row : rows) {
    CRegularExpression expression(row.pattern);
    ASSERT_TRUE(expression.IsCompiled()) << row.pattern << ": " << expression.GetError();
    EXPECT_EQ(Match(expression, row.subject), row.groups) << row.pattern << " on " << row.subject;
  }
}

TEST(RegularExpression, IgnoredCaseStopsAtSets) {
  struct Row {
    const char* pattern;
    const char* subject;
    const char* groups;
  };
  const Row rows[] = {
      {"ab", "xaB", "0@1'aB'"},
      {"Ab1", "aB1", "0@0'aB1'"},
      {"[ab]", "A", "no"},
      {"x[a]x", "XaX", "0@0'XaX'"},
      {"x[a]x", "XAX", "no"},
      // An escaped bracket also opens a set, and so does the set that an escaped letter becomes.
      {"\\[ab", "[ab", "0@0'[ab'"},
      {"\\[ab", "[aB", "no"},
      {"\\q", "[Qq]", "0@0'[Qq]'"},
      {"\xE4", "\xC4", "no"},
  };
  for (const Row& row : rows) {
    CRegularExpression expression(row.pattern, true);
    ASSERT_TRUE(expression.IsCompiled()) << row.pattern << ": " << expression.GetError();
    EXPECT_EQ(Match(expression, row.subject), row.groups) << row.pattern << " on " << row.subject;
  }
}

TEST(RegularExpression, FaultyPatternSaysWhatIsWrong) {
  struct Row {
    const char* pattern;
    const char* error;
  };
  const Row rows[] = {
      {nullptr, "NULL argument to regcomp"},
      {"((((((((((a))))))))))", "too many ()"},
      {"()()()()()()()()()()", "too many ()"},
      {"(a", "unterminated ()"},
      {"(a|", "unterminated ()"},
      {"a)", "unmatched ()"},
      {"()*", "*+ operand could be empty"},
      {"(a*)+", "*+ operand could be empty"},
      {"(a|)*", "*+ operand could be empty"},
      {"^*", "*+ operand could be empty"},
      {"$+", "*+ operand could be empty"},
      {"\\<*", "*+ operand could be empty"},
      {"a**", "nested *?+"},
      {"a+?", "nested *?+"},
      {"[z-a]", "invalid [] range"},
      {"[a-\xE4]", "invalid [] range"},
      {"[abc", "unmatched []"},
      {"[a-", "unmatched []"},
      {"[]", "unmatched []"},
      {"[^]", "unmatched []"},
      {"*a", "?+* follows nothing"},
      {"(*a)", "?+* follows nothing"},
      {"a|*b", "?+* follows nothing"},
      {"\\", "trailing \\"},
      {"a\\", "trailing \\"},
  };
  for (const Row& row : rows) {
    CRegularExpression expression(row.pattern);
    EXPECT_FALSE(expression.IsCompiled()) << row.pattern;
    EXPECT_EQ(expression.GetError(), row.error) << row.pattern;
    EXPECT_FALSE(expression.Match("a"));
    EXPECT_EQ(expression.GetError(), "corrupted regexp");
  }
  EXPECT_TRUE(CRegularExpression("(((((((((a)))))))))").IsCompiled());
  EXPECT_TRUE(CRegularExpression("{a}]").IsCompiled());
}

// Errors 6 and 23 don't occur; 15 and 20 can't be caused by a pattern, since these cases are
// detected earlier.
TEST(RegularExpression, TextsOfErrorsKeepTheirNumbers) {
  EXPECT_STREQ(PatternErrorText(6), "corrupted opcode");
  EXPECT_STREQ(PatternErrorText(15), "internal error: junk on end");
  EXPECT_STREQ(PatternErrorText(20), "internal error: \\0|) unexpected");
  EXPECT_STREQ(PatternErrorText(23), "internal error: strcspn 0");
  for (const int code : {-1, 0, 25}) EXPECT_STREQ(PatternErrorText(code), "Unknown error");
}

TEST(RegularExpression, GroupsAreCountedUpToTheFirstWithoutPart) {
  CRegularExpression expression("(a)|(b)");
  EXPECT_EQ(expression.SubCount(), -1);
  EXPECT_TRUE(expression.Match("b"));
  EXPECT_EQ(expression.SubCount(), 0);
  EXPECT_TRUE(expression.Match("a"));
  EXPECT_EQ(expression.SubCount(), 1);
  EXPECT_FALSE(expression.Match("c"));
  EXPECT_EQ(expression.SubCount(), -1);
  EXPECT_EQ(expression.SubString(1), "");

  CRegularExpression all("(1)(2)(3)(4)(5)(6)(7)(8)(9)");
  EXPECT_TRUE(all.Match("123456789"));
  EXPECT_EQ(all.SubCount(), 9);
  EXPECT_EQ(all.SubString(9), "9");
  for (const int group : {-1, 10}) EXPECT_EQ(all.SubStart(group), -1);

  EXPECT_FALSE(all.Match(nullptr));
  EXPECT_EQ(all.GetError(), "NULL argument to regexec");
}

TEST(RegularExpression, CopiesKeepTheirOwnPositions) {
  CRegularExpression first("a(b*)");
  EXPECT_EQ(Match(first, "xabb"), "0@1'abb' 1@2'bb'");
  CRegularExpression second = first;
  EXPECT_EQ(second.SubString(1), "bb");
  EXPECT_EQ(Match(second, "ab"), "0@0'ab' 1@1'b'");
  EXPECT_EQ(first.SubStart(0), 1);
  EXPECT_EQ(first.SubString(1), "bb");

  CRegularExpression third(".*ab");
  {
    const CRegularExpression fourth(third);
    EXPECT_EQ(Match(third, "xab"), "0@0'xab'");
  }
  // By now it has its own copy of the pattern.
  EXPECT_EQ(Match(third, "ba ab"), "0@0'ba ab'");
  third = first;
  third = *&third;
  EXPECT_EQ(Match(third, "a"), "0@0'a' 1@1''");
  EXPECT_EQ(first.SubString(1), "bb");
}

TEST(RegularExpression, HandleWithoutProgramAnswersEverything) {
  CRegularExpression none;
  EXPECT_FALSE(none.IsCompiled());
  EXPECT_EQ(none.GetError(), "");
  EXPECT_FALSE(none.Match("a"));
  EXPECT_EQ(none.SubCount(), -1);
  EXPECT_EQ(none.SubStart(0), -1);
  EXPECT_EQ(none.SubLength(0), -1);
  EXPECT_EQ(none.SubString(0), "");
  EXPECT_EQ(none.Substitute("a"), "");
  EXPECT_EQ(none.GetError(), "NULL regexp");
  // A successful operation clears an old error.
  none = CRegularExpression("(");
  EXPECT_EQ(none.GetError(), "unterminated ()");
  none.SubCount();
  EXPECT_EQ(none.GetError(), "");
}

TEST(RegularExpression, SubstituteKnowsItsEscapes) {
  struct Row {
    const char* replacement;
    const char* result;
  };
  const Row rows[] = {
      {"", ""},
      {"x&y\\1\\\\\\&\\q", "xabbcybb\\&\\q"},
      {"\\0\\2\\3", "abbc"},
      {"\\", "\\"},
      {"\\x&", "\\xabbc"},
      {"\\\\1", "\\1"},
      {"&&", "abbcabbc"},
  };
  CRegularExpression expression("a(b*)(x*)c|(y)");
  for (const Row& row : rows) {
    ASSERT_TRUE(expression.Match("-abbc"));
    EXPECT_EQ(expression.Substitute(row.replacement), row.result) << row.replacement;
    EXPECT_EQ(expression.GetError(), "");
  }
}

TEST(RegularExpression, SubstituteNoticesLostText) {
  CRegularExpression expression("a.c");
  char subject[] = "xabc";
  ASSERT_TRUE(expression.Match(subject));
  subject[2] = '\0';
  EXPECT_EQ(expression.Substitute("<&>"), "");
  EXPECT_EQ(expression.GetError(), "damaged match string");
  EXPECT_EQ(expression.Substitute(nullptr), "");
  EXPECT_EQ(expression.GetError(), "NULL parm to regsub");
  EXPECT_FALSE(expression.Match("x"));
  EXPECT_EQ(expression.Substitute("<&>"), "<>");
}

}  // namespace
}  // namespace tarn
