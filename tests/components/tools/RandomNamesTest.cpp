#include "components/tools/RandomNames.h"

#include <gtest/gtest.h>

namespace tarn::tools {
namespace {

TEST(RandomNames, OnlyWhatFitsAPatternIsCounted) {
  const struct {
    const char* text;
    const char* expected;
  } rows[] = {
      {"LOAD /tmp/ccAb12Zz.lto.o\n.text /tmp/ccAb12Zz.lto.o",
       "LOAD /tmp/cc000001.lto.o\n"
       ".text /tmp/cc000001.lto.o"},
      {"/t/ccAAAAAA.lto.o /t/ccBBBBBB.ltrans0.o /t/ccBBBBBB.ltrans1.o /t/ccAAAAAA.lto.o",
       "/t/cc000002.lto.o /t/cc000001.ltrans0.o /t/cc000001.ltrans1.o /t/cc000002.lto.o"},
      {"/ccAAAAA.lto. /ccAAAAA_.lto. ccAAAAAA.lto. /ccAAAAAA.o /cc", nullptr},
  };
  for (const auto& row : rows) {
    std::string text = row.text;
    const bool isChanged = row.expected != nullptr;
    EXPECT_EQ(ReplaceRandomNames(text, {"/cc??????.ltrans", "/cc??????.lto."}), isChanged);
    EXPECT_EQ(text, isChanged ? row.expected : row.text);
  }
}

}  // namespace
}  // namespace tarn::tools
