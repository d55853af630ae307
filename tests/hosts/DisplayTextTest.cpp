#include "hosts/cli/DisplayText.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

#include "platform/text/Text.h"

namespace tarn::host {
namespace {

TEST(DisplayPath, IsTheWayFromTheUsersFolder) {
  const struct {
    const char *path, *folder, *shown;
  } cases[] = {
      {"/p/src/a.c", "/p", "src/a.c"},
      {"/p/src/a.c", "/p/src", "a.c"},
      {"/p/src/a.c", "/p/build", "../src/a.c"},
      {"/p/a.c", "/p/x/y", "../../a.c"},
      {"/p/a.c", "/p/x/y/z", "/p/a.c"},
      {"src/a.c", "/p", "src/a.c"},
      {"/q/a.c", "/p", "/q/a.c"},
      {"C:\\p\\a.c", "/p", "C:\\p\\a.c"},
      {"", "/p", ""},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(DisplayPath(each.path, each.folder), each.shown) << each.path << " " << each.folder;
  }
}

// Colour codes as {B}old, {R}ed, {Y}ellow and {-} for their end.
std::string NameColours(std::string text) {
  for (const auto& [code, name] : {std::pair{"\033[1m", "{B}"},
                                   {"\033[1;31m", "{R}"},
                                   {"\033[1;33m", "{Y}"},
                                   {"\033[0m", "{-}"}}) {
    text = ReplaceAll(text, code, name);
  }
  return text;
}

TEST(DisplayEntry, KeepsTheToolsColumnAndPaintsTheKind) {
  const struct {
    LogEntry entry;
    const char* shown;
  } cases[] = {
      {{LogKind::Error, "/p/src/a.c:3:5: error: bad x: y", "bad x: y", "/p/src/a.c", 3},
       "{B}src/a.c{-}:3:5: {R}error:{-} bad x: y"},
      {{LogKind::Error, "src/a.c:3:5: fatal error: no", "no", "/p/src/a.c", 3},
       "{B}src/a.c{-}:3:5: {R}fatal error:{-} no"},
      {{LogKind::Warning, "\"a.c\", line 3: odd", "odd", "/p/src/a.c", 3},
       "{B}src/a.c{-}:3: {Y}warning:{-} odd"},
      {{LogKind::Error, "/p/src/a.c:4: undefined 'g'", "undefined 'g'", "/p/src/a.c", 4},
       "{B}src/a.c{-}:4: {R}error:{-} undefined 'g'"},
      {{LogKind::Warning, "/p/src/a.c:4:10: odd", "", "/p/src/a.c", 4},
       "{B}src/a.c{-}:4:10: {Y}warning:{-} odd"},
      {{LogKind::Error, "x", "gone", "/p/src/a.c", 0}, "{B}src/a.c{-}: {R}error:{-} gone"},
      {{LogKind::Error, "gcc was not found", "gcc was not found", "", 0},
       "{R}error:{-} gcc was not found"},
      {{LogKind::Heading, "Build", "", "", 0}, "{B}Build{-}"},
      {{LogKind::Plain, "In file from /p/src/a.c:1:", "", "/p/src/a.c", 1},
       "In file from src/a.c:1:"},
      {{LogKind::Plain, "../lib/a.c: In function 'a.c':", "", "/p/lib/a.c", 0},
       "lib/a.c: In function 'a.c':"},
      {{LogKind::Plain, "a.c: In file /lib/a.c", "", "/q/lib/a.c", 0},
       "/q/lib/a.c: In file /lib/a.c"},
      {{LogKind::Plain, "  3 | x\x1b[31m;\x07", "", "", 0}, "  3 | x[31m;"},
  };
  std::ostringstream out;
  ConsoleStyle style;
  style.color = true;
  const Console console(out, style);
  for (const auto& each : cases) {
    EXPECT_EQ(NameColours(DisplayEntry(each.entry, "/p", console)), each.shown);
  }
}

TEST(DisplayText, ColumnsAreCharacters) {
  EXPECT_EQ(Padded("gr\xc3\xbc\xc3\x9f", 6) + "|", "gr\xc3\xbc\xc3\x9f  |");
  EXPECT_EQ(Padded("longer", 4) + "|", "longer|");
}

TEST(DisplayText, ClocksAndCounts) {
  using std::chrono::milliseconds;
  EXPECT_EQ(ClockText(milliseconds(65'400)), "1:05");
  EXPECT_EQ(DurationText(milliseconds(1'249)), "1.2 s");
  EXPECT_EQ(CountText(1, "error") + " " + CountText(0, "error"), "1 error 0 errors");
}

}  // namespace
}  // namespace tarn::host
