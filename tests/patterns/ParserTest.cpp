#include "patterns/Parser.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

// Returns the tokens in brackets, including the end marker.
std::string Describe(const CParser& parser) {
  std::string out = std::to_string(parser.GetCount()) + ":";
  for (int i = 0; i <= parser.GetCount(); ++i) out += "[" + parser.GetToken(i) + "]";
  return out;
}

TEST(Parser, TokensFollowSeparatorsAndQuotes) {
  const struct {
    const char* name;
    std::string text;
    const char* separators;
    const char* expected;
  } rows[] = {
      {"runs of separators count as one", "a;b;;c", ";", "3:[a][b][c][|]"},
      {"leading and trailing separators", ";,a,;", ";,", "1:[a][|]"},
      {"empty", "", ";", "0:[|]"},
      {"no separators", "a;b", "", "1:[a;b][|]"},
      {"a bar is a text like any other", "|;|", ";", "2:[|][|][|]"},
      {"high bytes", "\xE4\xFF;\xC3", "\xFF", "2:[\xE4][;\xC3][|]"},
      {"zero byte ends the text", std::string("a;b\0;c", 6), ";", "2:[a][b][|]"},

      {"text behind the closing quote goes", "'a'b;c", ";", "2:[a][c][|]"},
      {"the last quote closes", "\"a\"b\"c;d", ";", "2:[a\"b][d][|]"},
      {"the other quote doesn't close", "\"it's\" 'x", " ", "2:[it's][x][|]"},
      {"empty quoted", "'';a", ";", "2:[][a][|]"},
      {"quote inside a token", "a'b c'd", " ", "2:[a'b][c'd][|]"},

      {"past a separator", "\"a b\" c", " ", "2:[a b][c][|]"},
      {"never closed", "\"a b c", " ", "1:[a b c][|]"},
      {"blank stands for any separator", "\"a,b\",c", ",", "2:[a b][c][|]"},
      {"only the first of a run is replaced", "\"a,,b\",c", ",", "2:[a ,b][c][|]"},
      {"quote first behind the separator", "\"a,\"b", ",", "1:[a b][|]"},
      {"nothing behind", "\"abc", ",", "1:[abc][|]"},
      {"only a separator behind", "\"abc,", ",", "1:[abc][|]"},
      {"only quotes behind", "\"a \"\"", " ", "1:[a][|]"},
      {"lone quote", "'", ";", "1:[][|]"},
      {"quote and blank", "\" b\" c", " ", "2:[ b][c][|]"},
      {"a tool's line", "\"file.c\", line 3: bad\nnext", "\n", "2:[file.c][next][|]"},
      {"a lone quote swallows lines", "'tis\nline\nit's\nend", "\n", "3:[tis line\nit][s][end][|]"},
      {"CR stays", "a\r\nb", "\n", "2:[a\r][b][|]"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Describe(CParser(row.text, row.separators)), row.expected) << row.name;
  }
}

TEST(Parser, IndexOutsideGivesNothing) {
  const CParser parser("a;b", ";");
  EXPECT_EQ(parser.GetToken(-1), "");
  EXPECT_EQ(parser.GetToken(3), "");
}

// Each of these takes hours if the rest of the input is scanned again for each token.
TEST(Parser, OneMegabyteIsOnePass) {
  const std::pair<const char*, int> rows[] = {{"a ", 524288}, {"' ", 174763}, {"''", 1}};
  for (const auto& [piece, tokens] : rows) {
    std::string text;
    while (text.size() < 1 << 20) text += piece;
    EXPECT_EQ(CParser(text, " ").GetCount(), tokens) << piece;
  }
}

}  // namespace
}  // namespace tarn
