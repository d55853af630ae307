#include "hosts/core/LogTail.h"

#include <gtest/gtest.h>

#include "support/MemoryFileSystem.h"

namespace tarn::host {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kFollowedLog = "/p/demo.tlog";
constexpr std::int64_t kStart = 1'000'000;

std::string Log(const Lines& texts, const std::string& root = "output") {
  std::string text = "<?xml version=\"1.0\"?>\r\n<" + root + ">";
  for (const std::string& each : texts) text += "\r\n\t<message Description=\"" + each + "\" />";
  return text + "\r\n</" + root + ">";
}

// Returns the texts of new entries, after "other" if they belong to a different log.
Lines Take(LogTail& tail, std::int64_t now) {
  const LogTail::Update news = tail.Take(now);
  Lines texts;
  if (news.isOtherLog) texts.emplace_back("other");
  for (const LogEntry& entry : news.entries) texts.push_back(entry.text);
  return texts;
}

TEST(LogTailTest, EachLineComesOnceWhateverHappensToTheFile) {
  const std::string longer = Log({"a", "b", "&#39;c&#39;", "d"});
  const std::string cut = longer.substr(0, longer.rfind("\r\n"));
  const struct {
    const char* name;
    std::string file;
    int later;  // seconds
    Lines news;
  } steps[] = {
      {"the first look", Log({"a", "b"}), 0, {"a", "b"}},
      {"nothing new", Log({"a", "b"}), 0, {}},
      {"longer within the same second", Log({"a", "b", "&#39;c&#39;"}), 0, {"'c'"}},
      {"cut in a tag", cut.substr(0, cut.size() - 5), 1, {}},
      {"cut between two", cut, 1, {}},
      {"whole again", longer, 1, {"d"}},
      {"of the same length, another's",
       Log({"a", "x", "&#39;c&#39;", "d"}),
       0,
       {"other", "a", "x", "'c'", "d"}},
      {"the same once more",
       Log({"a", "x", "&#39;c&#39;", "d"}),
       9,
       {"other", "a", "x", "'c'", "d"}},
      {"emptied", "<?xml version=\"1.0\"?>\r\n<output />", 1, {"other"}},
      {"the first of another build", Log({"a"}), 1, {"a"}},
      {"of another root", Log({"a", "b"}, "Messages"), 1, {"other", "a", "b"}},
      {"no file of ours", "junk", 1, {}},
      {"nothing in it", "", 1, {}},
  };
  testing::MemoryFileSystem disk(kStart);
  LogTail tail(disk, kFollowedLog);
  std::int64_t now = kStart;
  EXPECT_EQ(Take(tail, now), Lines{});
  for (const auto& step : steps) {
    disk.Advance(step.later);
    now += step.later;
    disk.AddFile(kFollowedLog, step.file);
    EXPECT_EQ(Take(tail, now), step.news) << step.name;
  }
}

TEST(LogTailTest, ALongLogComesInPiecesThatAreWholeMessages) {
  testing::MemoryFileSystem disk(kStart);
  const std::string odd = "a > b' /&gt;";
  disk.AddFile(kFollowedLog,
               "<?xml version=\"1.0\"?>\n<!-- <x> --><output>\n\t<message Description=\"" + odd +
                   "\"><part n='\">'/></message><!-- </output> -->\n\t<message>two</message>\n\t"
                   "<message Description=\"three\" />\n</output>");
  LogTail tail(disk, kFollowedLog);
  Lines pieces;
  for (bool hasMore = true; hasMore;) {
    const LogTail::Update news = tail.Take(kStart, 1);
    pieces.emplace_back();
    for (const LogEntry& entry : news.entries) pieces.back() += entry.text + ";";
    hasMore = news.hasMore;
  }
  EXPECT_EQ(pieces, (Lines{"", "a > b' />;", "", "two;", "three;"}));
  disk.AddFile(kFollowedLog, Log({"of another build"}));
  EXPECT_EQ(Take(tail, kStart), (Lines{"other", "of another build"}));
}

TEST(LogTailTest, AFileThatIsAtRestIsOnlyLookedAt) {
  testing::MemoryFileSystem disk(kStart);
  disk.AddFile(kFollowedLog, Log({"a"}));
  LogTail tail(disk, kFollowedLog);
  for (int second = 0; second < 5; ++second) tail.Take(kStart + second);
  EXPECT_EQ(disk.Operations("read").size(), 3u);
}

}  // namespace
}  // namespace tarn::host
