#include "hosts/core/ProjectFile.h"

#include <gtest/gtest.h>

#include "support/MemoryFileSystem.h"

namespace tarn::host {
namespace {

TEST(ProjectFile, AFolderMeansItsOnlyProject) {
  testing::MemoryFileSystem files;
  files.AddFile("/one/demo.TPRJ", "");
  files.AddFile("/one/demo.tapp", "");
  files.AddFile("/two/a.tprj", "");
  files.AddFile("/two/b.tprj", "");
  files.AddFolder("/none/x.tprj");
  files.SetCurrentFolder("/one");
  const struct {
    const char *argument, *path;
    std::vector<std::string> choices;
    const char* problem;
  } cases[] = {
      {"", "/one/demo.TPRJ", {}, ""},
      {"../one", "/one/demo.TPRJ", {}, ""},
      {"demo.tapp", "", {}, "demo.tapp is not a project file (*.tprj)."},
      {"/two", "", {"a.tprj", "b.tprj"}, "There are several project files in /two."},
      {"/two/b.tprj", "/two/b.tprj", {}, ""},
      {"/none", "", {}, "There is no project file (*.tprj) in /none."},
      {"gone", "", {}, "There is no project file or folder named gone."},
  };
  for (const auto& each : cases) {
    const FoundProject found = FindProject(files, each.argument);
    EXPECT_EQ(found.path, each.path) << each.argument;
    EXPECT_EQ(found.choices, each.choices) << each.argument;
    EXPECT_EQ(found.problem, each.problem) << each.argument;
  }
  EXPECT_EQ(StatePathOf("/two/b.x.tprj"), "/two/b.x.tstate");
}

}  // namespace
}  // namespace tarn::host
