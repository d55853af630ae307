#include "hosts/core/ProjectStatus.h"

#include <gtest/gtest.h>

namespace tarn::host {
namespace {

TEST(ProjectStatus, ReadsWhatTheInspectorTells) {
  const std::vector<ApplicationStatus> list = ParseStatus(
      "\r\n<Status><Application Header=\"a\" Path=\"/p/a.tapp\" Config=\"Debug\" Active=\"Yes\" >"
      "<Node Header=\"m.c\" Path=\"/p/m.c\" OutputFile=\"/p/m.o\" Tool=\"cc\" "
      "Reason=\"source-newer\" File=\"/p/m.c\" /><Other/></Application>"
      "<Application Header=\"b\" /></Status>");
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0].label + list[0].path + list[0].configuration, "a/p/a.tappDebug");
  EXPECT_TRUE(list[0].active);
  ASSERT_EQ(list[0].stale.size(), 1u);
  const StaleNode& node = list[0].stale[0];
  EXPECT_EQ(node.label + node.path + node.outputFile + node.tool + node.reason + node.file,
            "m.c/p/m.c/p/m.occsource-newer/p/m.c");
  EXPECT_FALSE(list[1].active);
  EXPECT_TRUE(ParseStatus("").empty());
}

TEST(ProjectStatus, EveryReasonIsASentenceAboutTheRightFile) {
  const struct {
    const char *reason, *file;
    bool isApplication;
    const char* text;
  } cases[] = {
      {"never-built", "", false, "was not built yet"},
      {"output-missing", "", false, "its output o.o is missing"},
      {"output-changed", "/p/o.o", false,
       "its output o.o was changed by something else since it was built"},
      {"source-newer", "/p/m.c", false, "is newer than the object"},
      {"source-missing", "/p/m.c", false, "its source m.c is missing"},
      {"dependency-newer", "/p/u.h", false, "its header u.h is newer than the object"},
      {"dependency-missing", "/p/l.ld", true, "its dependency l.ld is missing"},
      {"unreadable", "/p/u.h", false, "u.h can't be read: Permission denied"},
      {"part-newer", "/p/m.o", true, "its input m.o is newer than the program"},
      {"parts-stale", "", true, "its inputs will be rebuilt"},
      {"command-changed", "", false, "its command line changed since it was built"},
      {"no-output-name", "", false, "has no output file; check the option Build.OutputFile"},
      {"something-new", "", false, "something-new"},
  };
  for (const auto& each : cases) {
    const StaleNode node{"m",         "/p/m.c",  "/p/o.o",           "cc",
                         each.reason, each.file, "Permission denied"};
    const auto shorten = [](const std::string& path) { return path.substr(3); };
    EXPECT_EQ(DescribeReason(node, each.isApplication, shorten), each.text);
  }
}

}  // namespace
}  // namespace tarn::host
