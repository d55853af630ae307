// Compiled programs of patterns, as strings.
#include <gtest/gtest.h>

#include "patterns/CompiledPattern.h"
#include "patterns/PatternSizer.h"

namespace tarn {
namespace {

std::string NameOf(int opcode) {
  static constexpr const char* kNames[] = {"End",    "LineBegin", "LineEnd",   "Any",     "AnyOf",
                                           "AnyBut", "Branch",    "Back",      "Exactly", "Nothing",
                                           "Star",   "Plus",      "WordBegin", "WordEnd"};
  if (opcode > OpClose) return "Close" + std::to_string(opcode - OpClose);
  if (opcode > OpOpen) return "Open" + std::to_string(opcode - OpOpen);
  return kNames[opcode];
}

// Returns each node as its offset, name, string and, after >, the offset of the next node.
std::string Dump(const CCompiledPattern& pattern) {
  std::string out;
  const char* const code = pattern.code.get();
  for (const char* node = code + 1; node < code + pattern.size;) {
    const int opcode = OpcodeOf(node);
    out += std::to_string(node - code) + " " + NameOf(opcode);
    const char* next = NextNode(node);
    node = OperandOf(node);
    if (opcode == OpAnyOf || opcode == OpAnyBut || opcode == OpExactly) {
      const std::string text(node);
      out += " '" + text + "'";
      node += text.size() + 1;
    }
    if (next) out += " >" + std::to_string(next - code);
    out += node < code + pattern.size ? "; " : "";
  }
  return out;
}

TEST(PatternProgram, ConstructsCompileToTheseNodes) {
  struct Row {
    const char* pattern;
    const char* program;
  };
  const Row rows[] = {
      {"", "1 Branch >7; 4 Nothing >7; 7 End"},
      {"a|bc|",
       "1 Branch >9; 4 Exactly 'a' >24; 9 Branch >18; 12 Exactly 'bc' >24; 18 Branch >24; "
       "21 Nothing >24; 24 End"},
      {"(a)(b|c)",
       "1 Branch >40; 4 Open1 >7; 7 Branch >15; 10 Exactly 'a' >15; 15 Close1 >18; "
       "18 Open2 >21; 21 Branch >29; 24 Exactly 'b' >37; 29 Branch >37; 32 Exactly 'c' >37; "
       "37 Close2 >40; 40 End"},
      // The five repeats.
      {"a*", "1 Branch >12; 4 Star >12; 7 Exactly 'a'; 12 End"},
      {".+", "1 Branch >10; 4 Plus >10; 7 Any; 10 End"},
      {"(ab)*",
       "1 Branch >31; 4 Branch >25; 7 Open1 >10; 10 Branch >19; 13 Exactly 'ab' >19; "
       "19 Close1 >22; 22 Back >4; 25 Branch >28; 28 Nothing >31; 31 End"},
      {"(ab)+",
       "1 Branch >31; 4 Open1 >7; 7 Branch >16; 10 Exactly 'ab' >16; 16 Close1 >19; "
       "19 Branch >25; 22 Back >4; 25 Branch >28; 28 Nothing >31; 31 End"},
      {"a?b",
       "1 Branch >23; 4 Branch >12; 7 Exactly 'a' >15; 12 Branch >15; 15 Nothing >18; "
       "18 Exactly 'b' >23; 23 End"},
      {"(ab)?",
       "1 Branch >28; 4 Branch >22; 7 Open1 >10; 10 Branch >19; 13 Exactly 'ab' >19; "
       "19 Close1 >25; 22 Branch >25; 25 Nothing >28; 28 End"},
      // Sets.
      {"[a-d]", "1 Branch >12; 4 AnyOf 'abcd' >12; 12 End"},
      {"[]a]", "1 Branch >10; 4 AnyOf ']a' >10; 10 End"},
      {"[-a][a-][^-]",
       "1 Branch >21; 4 AnyOf '-a' >10; 10 AnyOf 'a-' >16; 16 AnyBut '-' >21; 21 End"},
      {"[^]]", "1 Branch >9; 4 AnyBut ']' >9; 9 End"},
      {"[a\\]", "1 Branch >10; 4 AnyOf 'a\\' >10; 10 End"},
      {"[a-b-d^]", "1 Branch >13; 4 AnyOf 'abcd^' >13; 13 End"},
      {"[\xFE-\x02]", "1 Branch >12; 4 AnyOf '\xFE\xFF\x01\x02' >12; 12 End"},
      // Boundaries in any position.
      {"^a$\\<\\>^",
       "1 Branch >24; 4 LineBegin >7; 7 Exactly 'a' >12; 12 LineEnd >15; 15 WordBegin >18; "
       "18 WordEnd >21; 21 LineBegin >24; 24 End"},
      // Runs of characters.
      {"abc*", "1 Branch >18; 4 Exactly 'ab' >10; 10 Star >18; 13 Exactly 'c'; 18 End"},
      {"ab\\**", "1 Branch >18; 4 Exactly 'ab' >10; 10 Star >18; 13 Exactly '*'; 18 End"},
      {"a\\.b\\d{2}]", "1 Branch >16; 4 Exactly 'a.bd{2}]' >16; 16 End"},
      {"a\\<b", "1 Branch >17; 4 Exactly 'a' >9; 9 WordBegin >12; 12 Exactly 'b' >17; 17 End"},
      {"a\nb", "1 Branch >15; 4 Exactly 'a' >9; 9 Exactly '\nb' >15; 15 End"},
  };
  for (const Row& row : rows) {
    CCompiledPattern pattern;
    ASSERT_TRUE(pattern.regcomp(row.pattern)) << row.pattern << ": " << pattern.error;
    EXPECT_EQ(Dump(pattern), row.program) << row.pattern;
    EXPECT_EQ(static_cast<unsigned char>(pattern.code[0]), 156);
  }
}

TEST(PatternProgram, ShortcutsAreFoundInOneAlternativeAlone) {
  struct Row {
    const char* pattern;
    const char* shortcuts;  // first character, anchor, required string
  };
  const Row rows[] = {
      {"abc", "a - "},        {"abc|abd", "- - "},    {"^abc", "- ^ "},        {"(^a)", "- - "},
      {"a?bc", "- - "},       {".*ab.*cd", "- - cd"}, {".+abc.cd", "- - abc"}, {"x.*abc", "x - "},
      {"(b+|c)ab", "- - ab"}, {"a*b|c", "- - "},
  };
  for (const Row& row : rows) {
    CCompiledPattern pattern;
    ASSERT_TRUE(pattern.regcomp(row.pattern)) << row.pattern;
    std::string shortcuts = {pattern.firstChar ? pattern.firstChar : '-', ' ',
                             pattern.anchored ? '^' : '-', ' '};
    if (pattern.required) shortcuts.append(pattern.required, pattern.requiredLength);
    EXPECT_EQ(shortcuts, row.shortcuts) << row.pattern;
    if (!pattern.required) continue;
    const CCompiledPattern clone(pattern);
    EXPECT_EQ(clone.required - clone.code.get(), pattern.required - pattern.code.get());
  }
}

// A literal of n characters takes n + 11 bytes: the magic byte, two nodes without a string and one
// with a string.
TEST(PatternProgram, LargestProgramFillsItsLinks) {
  CCompiledPattern largest;
  EXPECT_TRUE(largest.regcomp(std::string(32755, 'a').c_str()));
  EXPECT_EQ(largest.size, 32766u);
  CCompiledPattern tooLarge;
  EXPECT_FALSE(tooLarge.regcomp(std::string(32756, 'a').c_str()));
  EXPECT_EQ(tooLarge.error, "regexp too big");
  EXPECT_FALSE(tooLarge.compiled);
  EXPECT_EQ(tooLarge.code, nullptr);
}

// No pattern compiles to any of these programs.
TEST(PatternProgram, DamagedProgramIsRefused) {
  struct Row {
    std::size_t place;
    char byte;
    const char* error;
  };
  // Program of "a*": 0 magic, 1 Branch, 4 Star, 7 Exactly 'a', 12 End.
  const Row rows[] = {
      {0, 0, "corrupted regexp"},   {4, 40, "regexp corruption"},
      {4, 14, "regexp corruption"}, {5, 0, "corrupted pointers"},
      {5, 9, "corrupted pointers"}, {7, OpNothing, "internal error: bad call of regrepeat"},
  };
  for (const Row& row : rows) {
    CCompiledPattern pattern;
    ASSERT_TRUE(pattern.regcomp("a*"));
    pattern.code[row.place] = row.byte;
    EXPECT_FALSE(pattern.regexec("aa"));
    EXPECT_EQ(pattern.error, row.error) << row.place;
  }
  CCompiledPattern pattern;
  ASSERT_TRUE(pattern.regcomp("a*"));
  pattern.code[0] = 0;
  EXPECT_EQ(pattern.regsub("x"), "");
  EXPECT_EQ(pattern.error, "damaged regexp fed to regsub");
}

}  // namespace
}  // namespace tarn
