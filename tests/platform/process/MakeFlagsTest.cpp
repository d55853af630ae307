#include "platform/process/MakeFlags.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

std::string Describe(const std::optional<JobserverAddress>& address) {
  if (!address) return "none";
  return address->path.empty()
             ? std::to_string(address->reader) + "|" + std::to_string(address->writer)
             : address->path;
}

TEST(MakeFlags, TheLastJobserverAppliesAndVariablesAreNotRead) {
  const struct {
    const char* flags;
    const char* found;
    int jobs;
    const char* replaced;  // by descriptors 10 and 11, and five jobs
  } rows[] = {
      {"", "none", 0, " -j5 --jobserver-auth=10,11"},
      {"kw", "none", 0, "kw -j5 --jobserver-auth=10,11"},
      {" -j3 --jobserver-auth=3,4", "3|4", 3, " -j5 --jobserver-auth=10,11"},
      {"w --jobserver-fds=5,6 -j", "5|6", 0, "w -j5 --jobserver-auth=10,11"},
      {"--jobserver-auth=3,4 -j2 --jobserver-auth=fifo:/t/a\\ b -j8 -- X=-j9 --jobserver-fds=1,2",
       "/t/a b", 8, " -j5 --jobserver-auth=10,11 -- X=-j9 --jobserver-fds=1,2"},
      {"--jobserver-auth=-2,-2", "-2|-2", 0, " -j5 --jobserver-auth=10,11"},
      {"--jobserver-auth=3", "3|-1", 0, " -j5 --jobserver-auth=10,11"},
      {"-I /x\\ -j7 --just", "none", 0, "-I /x\\ -j7 --just -j5 --jobserver-auth=10,11"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Describe(FindJobserver(row.flags)), row.found) << row.flags;
    EXPECT_EQ(FindMakeJobs(row.flags), row.jobs) << row.flags;
    EXPECT_EQ(ReplaceJobserver(row.flags, {10, 11, {}}, 5), row.replaced) << row.flags;
  }
}

}  // namespace
}  // namespace tarn
