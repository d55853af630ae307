#include "components/tools/FileList.h"

#include <gtest/gtest.h>

#include "components/tools/ResponseFile.h"

namespace tarn::tools {
namespace {

// An input, and its entries, each followed by "|".
using Row = std::pair<const char*, const char*>;

std::string Joined(const std::vector<std::string>& entries) {
  std::string text;
  for (const std::string& entry : entries) text += entry + '|';
  return text;
}

TEST(FileList, CommasInsideQuotesBelongToTheirPath) {
  const Row rows[] = {
      {"\"/p/a,b.c\",\"/p/c d.c\"", "/p/a,b.c|/p/c d.c|"},
      {"\"src\\a.c\"", "src/a.c|"},
      {"\"/p/say \"hi\".c\",\"b\"", "/p/say \"hi\".c|b|"},
      {"a.c, b.c", "a.c|b.c|"},
      {"\"a\",\"\",\"b\"", "a|b|"},
      {"\"never ended", "never ended|"},
      {",,", ""},
  };
  for (const auto& [input, expected] : rows) {
    EXPECT_EQ(Joined(SplitFileList(input)), expected) << input;
  }
}

TEST(FileList, WordsAreSplitAsAUserMeansThem) {
  const Row rows[] = {
      {"-a  -b", "-a|-b|"},
      {"-DX=\"a b\" 'c d'", "-DX=a b|c d|"},
      {"-DS=\\\"x\\\" a\\ b", "-DS=\"x\"|a b|"},
      {"'a\\b' c\\d", "a\\b|c\\d|"},
      {"\"\" x", "|x|"},
      {"\"open end", "open end|"},
      {"`id` $(id) *", "`id`|$(id)|*|"},
  };
  for (const auto& [input, expected] : rows) {
    EXPECT_EQ(Joined(SplitWords(input)), expected) << input;
  }
}

TEST(FileList, ResponseFilesProtectWhatTheReaderWouldTakeApart) {
  EXPECT_EQ(ResponseText(ResponseStyle::Gnu, {"-c", "a b\\c", "\"'", "", "-DX=$(Y)"}),
            "-c\na\\ b\\\\c\n\\\"\\'\n\"\"\n-DX=$(Y)\n");
}

}  // namespace
}  // namespace tarn::tools
