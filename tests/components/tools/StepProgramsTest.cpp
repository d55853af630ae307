// The programs of build steps: names and bytes that need care.

#include <gtest/gtest.h>

#include "components/tools/DepFile.h"
#include "components/tools/Embed.h"
#include "components/tools/VersionText.h"

namespace tarn::tools {
namespace {

TEST(StepPrograms, ANameThatIsNoneInCIsChanged) {
  const struct {
    const char* text;
    const char* name;
  } rows[] = {{"logo-2.x", "logo_2_x"}, {"2nd", "_2nd"}, {"", "_"}, {"f\xc3\xbcr", "f__r"}};
  for (const auto& row : rows) EXPECT_EQ(NameInC(row.text), row.name);
}

TEST(StepPrograms, AnArrayHasItsBytesAndIsNeverEmpty) {
  Embedding how{"a", "const char", "a.h", false};
  EXPECT_EQ(EmbeddedSource(how, ""),
            "#include \"a.h\"\n\nconst char a[] = {\n  0\n};\nconst unsigned long a_size = 0;\n");
  how.isTerminated = true;
  EXPECT_EQ(
      EmbeddedSource(how, "\xff"),
      "#include \"a.h\"\n\nconst char a[] = {\n  0xff,\n  0\n};\nconst unsigned long a_size = "
      "1;\n");
}

TEST(StepPrograms, TheRuleOfAVersionNamesFilesWhateverTheirNames) {
  const std::vector<std::string> names{"/p/a b", "/p/c#d", "/p/$e", "/p/a:b", "/p/x.in"};
  const DepFile read = ReadDepFile(DependencyRule("/p/x.stamp", names));
  EXPECT_EQ(read.problem, "");
  EXPECT_EQ(read.names, names);
}

TEST(StepPrograms, AVersionReplacesItsNamesOnly) {
  const VersionValues values{"v1", "c", "d", "7", true};
  EXPECT_EQ(FillVersion("@GIT_DIRTY@@BUILD_NUMBER@ a@b @GIT_NONE@ @", values),
            "17 a@b @GIT_NONE@ @");
}

}  // namespace
}  // namespace tarn::tools
