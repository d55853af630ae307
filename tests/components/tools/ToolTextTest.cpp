#include "components/tools/ToolText.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarn::tools {
namespace {

TEST(ToolText, CleanLineKeepsTextAroundEveryKindOfSequence) {
  const struct {
    const char* name;
    std::string input, expected;
  } rows[] = {
      {"colour", "a.c:1: \x1b[01;31m\x1b[Kerror: \x1b[m\x1b[Kbad", "a.c:1: error: bad"},
      {"link ended by bell", "\x1b]8;;http://x\x07[-Wall]\x1b]8;;\x07 end", "[-Wall] end"},
      {"link ended by escape", "\x1b]8;;u\x1b\\text\x1b]8;;\x1b\\", "text"},
      {"link without end keeps the rest", "a\x1b]8;;rest", "a8;;rest"},
      {"colour without end", "a\x1b[01;3", "a"},
      {"lone escape", "a\x1b", "a"},
      {"escape in front of a sequence", "\x1b\x1b[1mx", "x"},
      {"character set", "\x1b(Bx", "x"},
      {"tab and line end", "a\tb\r", "a b"},
      {"zero and bell", std::string("a\0b\x07", 4), "a.b."},
      {"high bytes stay", "\xe4\xff", "\xe4\xff"},
      {"leading blanks stay", "   ^  ", "   ^"},
  };
  for (const auto& row : rows) EXPECT_EQ(CleanLine(row.input), row.expected) << row.name;
}

std::vector<std::string> Assemble(const std::vector<std::string>& pieces) {
  std::vector<std::string> lines;
  LineAssembler assembler;
  const auto take = [&](std::string_view line) { lines.emplace_back(line); };
  for (const std::string& chunk : pieces) assembler.Add(chunk, take);
  assembler.Finish(take);
  return lines;
}

TEST(ToolText, LinesSurviveEveryCutIntoPieces) {
  const std::string text = "one\n\ntwo\r\nthree";
  const std::vector<std::string> expected{"one", "", "two\r", "three"};
  for (std::size_t first = 0; first <= text.size(); ++first) {
    for (std::size_t second = first; second <= text.size(); ++second) {
      const std::vector<std::string> pieces{
          text.substr(0, first), text.substr(first, second - first), text.substr(second)};
      ASSERT_EQ(Assemble(pieces), expected) << first << ' ' << second;
    }
  }
}

TEST(ToolText, ALineOfTenMegabytesIsCutAndReported) {
  const std::vector<std::string> pieces(160, std::string(65536, 'x'));
  const auto lines = Assemble(pieces);
  ASSERT_EQ(lines.size(), 1u);
  const std::size_t dropped = 160 * 65536 - LineAssembler::kMaxLine;
  EXPECT_EQ(lines[0], std::string(LineAssembler::kMaxLine, 'x') + " [" + std::to_string(dropped) +
                          " more bytes]");
}

}  // namespace
}  // namespace tarn::tools
