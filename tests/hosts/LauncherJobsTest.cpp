#include "hosts/core/LauncherJobs.h"

#include <gtest/gtest.h>

#include "platform/files/FileSystem.h"

namespace tarn::host {
namespace {

TEST(LauncherJobs, TheLimitsOfTheHostsAreAdded) {
  const struct {
    const char* hosts;
    int slots;
  } rows[] = {
      {"", 0},
      {"localhost", 2},
      {"a b", 8},
      {"--randomize a/6,lzo,cpp  user@b/3 c:3632/5\n", 14},
      {"--localslots=4 [::1]:3632/7 # d/9\ne/1", 8},
      {"+zeroconf", 0},
      {"a/0 b/x c/9999", 1024},
  };
  for (const auto& row : rows) EXPECT_EQ(CountHostSlots(row.hosts), row.slots) << row.hosts;
}

TEST(LauncherJobs, OnlyALauncherThatDistributesAddsJobs) {
  const struct {
    const char* launcher;
    const char* prefix;  // CCACHE_PREFIX
    int jobs;            // 0: as without a launcher
  } rows[] = {
      {"", "distcc", 0},           {"ccache", "", 0},         {"distcc", "", 12},
      {"/usr/bin/distcc", "", 12}, {"ccache distcc", "", 12}, {"ccache", "distcc", 12},
      {"nice", "distcc", 0},       {"icecc", "", 4},          {"ccache", "/opt/icecc", 4},
  };
  for (const auto& row : rows) {
    const auto environment = [&row](const char* name) -> std::string {
      if (name == std::string("CCACHE_PREFIX")) return row.prefix;
      return name == std::string("DISTCC_HOSTS") ? "a/5 b/7" : "";
    };
    EXPECT_EQ(CountLauncherJobs(row.launcher, environment, FileSystem::Native(), 2).value_or(0),
              row.jobs)
        << row.launcher << " " << row.prefix;
  }
}

}  // namespace
}  // namespace tarn::host
