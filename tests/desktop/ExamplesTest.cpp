#include "hosts/desktop/Examples.h"

#include <gtest/gtest.h>

#include "support/MemoryFileSystem.h"

namespace tarn::host {
namespace {

TEST(ExamplesTest, AnExampleIsCopiedWholeAndNeverOverAnything) {
  testing::MemoryFileSystem files;
  files.AddFile("/share/b/b.tprj", "project");
  files.AddFile("/share/b/src/main.c", "code");
  files.AddFile("/share/b/README.md", "# b\n\nFor an 8052 at 11.0592 MHz: blinks. More.\n");
  files.AddFile("/share/none/a.c", "");
  files.AddFile("/home/b/own", "own");
  const auto found = FindExamples(files, "/share");
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].summary, "For an 8052 at 11.0592 MHz");
  const auto copied = CopyExample(files, found[0], "/home");
  ASSERT_TRUE(copied);
  EXPECT_EQ(*copied, "/home/b-2/b.tprj");
  EXPECT_EQ(*files.ReadWholeFile("/home/b-2/src/main.c"), "code");
}

}  // namespace
}  // namespace tarn::host
