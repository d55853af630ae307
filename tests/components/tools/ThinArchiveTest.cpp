#include "components/tools/ThinArchive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarn::tools {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string Header(std::string name, std::size_t size) {
  name.resize(48, ' ');
  std::string digits = std::to_string(size);
  digits.resize(10, ' ');
  return name + digits + "`\n";
}

TEST(ThinArchive, NamesItsMembersAndThoseOfArchivesInIt) {
  const std::string table = "deep/a long name.o/\nlibg.a/\n";
  const std::string archive = "!<thin>\n" + Header("/", 3) + "xyz\n" + Header("//", table.size()) +
                              table + Header("/0", 4096) + Header("b.o/", 10) +
                              Header("/20:64", 7) + Header("/20:96", 7);
  EXPECT_THAT(ReadThinArchive(archive), ElementsAre("deep/a long name.o", "b.o", "libg.a"));
  EXPECT_THAT(ReadThinArchive("!<arch>\n" + archive.substr(8)), IsEmpty());
  // Damaged archives.
  EXPECT_THAT(ReadThinArchive(archive.substr(0, archive.size() - 130)),
              ElementsAre("deep/a long name.o"));
  EXPECT_THAT(ReadThinArchive("!<thin>\n" + Header("/99", 0) + Header("//", 999999999)), IsEmpty());
}

}  // namespace
}  // namespace tarn::tools
