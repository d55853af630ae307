#include "hosts/cli/DisplayText.h"
#include "hosts/cli/MonitorText.h"

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

// Replaces colour codes by {B}old, {R}ed, {Y}ellow and {-} for the end.
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
      {{LogKind::Plain, "  3 | x\x1b[31m;\x07", "", "", 0}, "  3 | x\\x1b[31m;\\x07"},
  };
  std::ostringstream out;
  ConsoleStyle style;
  style.color = true;
  const Console console(out, style);
  for (const auto& each : cases) {
    EXPECT_EQ(NameColours(DisplayEntry(each.entry, "/p", console).GetBytes()), each.shown);
  }
}

TEST(Printable, HarmfulCharactersAreNamedAndAllOthersStay) {
  const struct {
    const char* name;
    std::string text, line, json, xml;
  } rows[] = {
      {"controls", "a\x01\x1b[1m\x7f", "a\\x01\\x1b[1m\\x7f", "a\\u0001\\u001b[1m\\u007f",
       "a\xEF\xBF\xBD\xEF\xBF\xBD[1m&#x7F;"},
      {"C1", "\xC2\x80\xC2\x9B\xC2\x9F", "\\u0080\\u009b\\u009f", "\\u0080\\u009b\\u009f",
       "&#x80;&#x9B;&#x9F;"},
      {"direction", "\xE2\x80\xAA\xE2\x80\xAE\xE2\x81\xA6\xE2\x81\xA9",
       "\\u202a\\u202e\\u2066\\u2069", "\\u202a\\u202e\\u2066\\u2069",
       "&#x202A;&#x202E;&#x2066;&#x2069;"},
      {"bytes", "\x9B\xC2", "\\x9b\xC2", "\\u009b\xC2", "\xEF\xBF\xBD\xC2"},
      {"longer than needed", "\xE0\x82\x9B", "\xE0\\x82\\x9b", "\xE0\\u0082\\u009b",
       "\xE0\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"cut", "\xE2\x80", "\xE2\\x80", "\xE2\\u0080", "\xE2\xEF\xBF\xBD"},
      {"harmless", "\tgr\xC3\xBC\xC3\x9F \xC2\xA0\xE6\x97\x9B\xE2\x80\xA7\xF0\x9F\x98\x80",
       "\tgr\xC3\xBC\xC3\x9F \xC2\xA0\xE6\x97\x9B\xE2\x80\xA7\xF0\x9F\x98\x80",
       "\tgr\xC3\xBC\xC3\x9F \xC2\xA0\xE6\x97\x9B\xE2\x80\xA7\xF0\x9F\x98\x80",
       "\tgr\xC3\xBC\xC3\x9F \xC2\xA0\xE6\x97\x9B\xE2\x80\xA7\xF0\x9F\x98\x80"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Printable(row.text), row.line) << row.name;
    EXPECT_EQ(Printable(row.line), row.line) << row.name;
    EXPECT_EQ(PrintableJson(row.text), row.json) << row.name;
    EXPECT_EQ(PrintableXml(row.text), row.xml) << row.name;
  }
  EXPECT_EQ(Printable("a\nb"), "a\\x0ab");
  EXPECT_EQ(PrintableLines("a\nb\r"), "a\nb\\x0d");
}

TEST(Console, OnlyItsOwnColoursReachTheTerminal) {
  std::ostringstream out, errors;
  ConsoleStyle style;
  style.color = style.redraws = true;
  Console console(out, style, errors);
  console.PrintLine("\x1b[1;31m" + console.Dye(Paint::Red, "x\x1b[0m") + "\x1b[0m\n");
  EXPECT_EQ(out.str(), "\\x1b[1;31m\x1b[1;31mx\\x1b[0m\x1b[0m\\x1b[0m\\x0a\n");
  out.str("");
  console.ShowProgress("\x1b[2J");
  EXPECT_EQ(out.str(), "\r\x1b[K\\x1b[2J");
  console.Complain("a\n\x9B", {"b"});
  EXPECT_EQ(errors.str(), "tarn: a\\x0a\\x9b\nb\n");
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

TEST(MonitorText, FormatsWhatAPortReceives) {
  const auto time = [] { return std::string("[0.5]"); };
  MonitorText text(false, time);
  std::string shown = text.Add("a\r\nb");
  shown += text.Add("c\n\nd");
  // The terminal gets no half character.
  EXPECT_EQ(text.Add("\xc3"), "");
  EXPECT_EQ(text.Add("\x80"), "\xc3\x80");
  EXPECT_EQ(shown + text.Finish(), "[0.5] a\n[0.5] bc\n\n[0.5] d\n");
  MonitorText hex(true, {});
  shown = hex.Add("0123456789abcdef\n\xff");
  EXPECT_EQ(shown + hex.Finish(),
            "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66  0123456789abcdef\n0a ff " +
                std::string(43, ' ') + "..\n");
  EXPECT_EQ(ToLineEnds("a\nb\n", "\r\n"), "a\r\nb\r\n");
}

}  // namespace
}  // namespace tarn::host
