// Patterns and subjects for which a pure backtracking matcher takes exponential time.
#include <gtest/gtest.h>

#include "patterns/DiagnosticParser.h"
#include "patterns/PatternMatcher.h"

namespace tarn {
namespace {

std::string Repeat(int count, const std::string& text) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

TEST(PatternCost, StepsAreBoundedByPatternTimesSubject) {
  const std::string path = kPathPattern;
  const std::string inLine = kBuiltInPatterns[0].pattern;
  struct Row {
    const char* name;
    std::string pattern;
    std::string subject;
    bool matches;
  };
  const Row rows[] = {
      {"nested repeats", "(a+)+b", Repeat(100'000, "a"), false},
      {"nested repeats, found", "(a+)+b", Repeat(100'000, "a") + "b", true},
      {"alternatives alike", "(a|a|ab?)*c", Repeat(100'000, "ab"), false},
      {"four of everything", "(.*)(.*)(.*)(.*)x", Repeat(100'000, "a"), false},
      {"a repeat from each start", "[a-z]*[0-9]", Repeat(100'000, "a"), false},
      {"segments", path, "c:" + Repeat(100'000, "\\a"), true},
      {"segments and no line", path + ":([0-9]*):(.*)", "c:" + Repeat(100'000, "\\a"), false},
      {"backslashes", path, "c:" + Repeat(100'000, "\\"), true},
      {"backslashes and no line", path + ":([0-9]*):(.*)", "c:" + Repeat(100'000, "\\"), false},
      {"blanks", inLine, "*** ERROR" + Repeat(16'000, " "), false},
      {"a line's own words", inLine, "*** ERROR" + Repeat(2'000, " IN LINE 1 OF x"), false},
      {"a line's own words, found", inLine, "*** ERROR" + Repeat(2'000, " IN LINE 1 OF x") + " : x",
       true},
  };
  for (const Row& row : rows) {
    CCompiledPattern pattern;
    ASSERT_TRUE(pattern.regcomp(row.pattern.c_str())) << row.name;
    CPatternMatcher matcher(pattern, row.subject.c_str());
    EXPECT_EQ(matcher.Search(), row.matches) << row.name;
    EXPECT_LE(matcher.GetStepCount(), pattern.size * row.subject.size()) << row.name;
  }
}

}  // namespace
}  // namespace tarn
