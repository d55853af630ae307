#include "hosts/core/ProblemList.h"

#include <gtest/gtest.h>

#include "support/MemoryFileSystem.h"

namespace tarn::host {
namespace {

std::string Log(const std::string& messages) {
  return "<?xml version=\"1.0\"?>\r\n<output>" + messages + "\r\n</output>";
}
std::string Message(const char* icon, const std::string& file, int line) {
  return "\r\n\t<message Icon=\"" + std::string(icon) + "\" Description=\"d\" File=\"" + file +
         "\" Line=\"" + std::to_string(line) + "\" />";
}
// Returns "file:line number/count"; an empty string if there is none.
std::string Text(const std::optional<ProblemList::Place>& place) {
  if (!place) return {};
  return place->problem.file + ":" + std::to_string(place->problem.line) + " " +
         std::to_string(place->number) + "/" + std::to_string(place->count);
}

TEST(ProblemListTest, GoesRoundTheErrorsAndWarningsOfTheLastBuildThatHaveAPlace) {
  constexpr std::int64_t kNow = 1'000'000;
  testing::MemoryFileSystem disk(kNow);
  ProblemList problems(disk);
  EXPECT_EQ(Text(problems.Next(kNow)), "") << "no project";
  problems.SetProject("/p/demo.tprj");
  EXPECT_EQ(Text(problems.Next(kNow)), "") << "never built";

  const std::string first = Message("5", "", 0) + Message("1", "/p/a.c", 3) + Message("2", "", 0) +
                            Message("4", "/p/x.c", 1);
  disk.AddFile("/p/demo.tlog", Log(first));
  EXPECT_EQ(Text(problems.Previous(kNow)), "/p/a.c:3 1/1");
  // The build continues.
  const std::string longer = first + Message("2", "/p/b.c", 5) + Message("2", "/p/b.c", 9);
  disk.AddFile("/p/demo.tlog", Log(longer));
  EXPECT_EQ(Text(problems.Next(kNow)), "/p/b.c:5 2/3");
  problems.GoTo("/p/b.c", 9, kNow);
  problems.GoTo("/p/b.c", 10, kNow);
  EXPECT_EQ(Text(problems.Next(kNow)), "/p/a.c:3 1/3") << "round the end";
  EXPECT_EQ(Text(problems.Previous(kNow)), "/p/b.c:9 3/3") << "round the start";

  disk.AddFile("/p/demo.tlog", Log(Message("2", "/p/c.c", 1)));
  EXPECT_EQ(Text(problems.Next(kNow)), "/p/c.c:1 1/1") << "another build";
  problems.SetProject("/p/other.tprj");
  EXPECT_EQ(Text(problems.Next(kNow)), "");
}

}  // namespace
}  // namespace tarn::host
