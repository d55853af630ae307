#include <gtest/gtest.h>

#include <set>

#include "RecordingViews.h"
#include "output/BuildOutput.h"
#include "platform/text/Text.h"
#include "support/MemoryFileSystem.h"
#include "support/TestEnvironment.h"

namespace tarn {
namespace {

using test::Flat;

struct ParsedToolText : ::testing::Test {
  // Returns one line for each message: "kind|file|line|message|help|link". The kind is E, W or P;
  // for P, the message is the whole line.
  std::string Parse(const std::string& text, const char* lineTemplate = nullptr) {
    const int before = hub.GetRoot().GetChildCount();
    hub.ParseToolText(text.c_str(), lineTemplate, "/help");
    std::string lines;
    for (int i = before; i < hub.GetRoot().GetChildCount(); ++i) {
      const CXmlNode& message = *hub.GetRoot().GetChild(i);
      const auto value = [&](const char* name) { return OrEmpty(message.GetAttrValue(name)); };
      const std::string kind = value("Icon").empty() ? "P" : value("Icon") == "2" ? "E" : "W";
      if (i > before) lines += '\n';
      lines += kind + '|' + value("File") + '|' + value("Line") + '|' +
               value(kind == "P" ? "Description" : "Contain") + '|' + value("Help") + '|' +
               message.FindChild("link")->GetValue();
    }
    return lines;
  }

  testing::MemoryFileSystem disk;
  test::RecordingViews views;
  CBuildOutput hub{disk};
};

TEST_F(ParsedToolText, KnownShapesGiveKindPlaceAndHelp) {
  const std::pair<const char*, const char*> rows[] = {
      {"*** ERROR C100 IN LINE 12 OF foo.c : bad thing",
       "E|foo.c|12|bad thing|/help/C100.htm|err://foo.c:12"},
      {"*** FATAL ERROR L7 IN LINE 3 OF a b.c : x", "E|a b.c|3|x|/help/L7.htm|err://a b.c:3"},
      {"*** DOS ERROR IN LINE 3 OF a.c : ", "E|a.c|3|||err://a.c:3"},
      {"*** WARNING IN LINE 3 OF a.c : ERROR", "W|a.c|3|ERROR||err://a.c:3"},
      {"*** WARNING L16 : DEAD CODE", "W|||DEAD CODE|/help/L16.htm|lnk://"},
      {"*** WARNING  L #16#  : x", "W|||x|/help/L_16.htm|lnk://"},
      {"*** WARNING # : x", "W|||x||lnk://"},
      {"*** ERROR L1 : c:/x.obj", "E|c:/x.obj||c:/x.obj|/help/L1.htm|lnk://"},
      {"*** ERROR IN LINE 7 OF : c:/x.c", "E|c:/x.c|7|c:/x.c||err://c:/x.c:7"},
      {"** ERROR L1 : x", "P|||** ERROR L1 : x||lnk://"},
      {"*** Error L1 : x", "P|||*** Error L1 : x||lnk://"},
      {"C:\\src\\a.c:12:warning: no use of x",
       "W|C:\\src\\a.c|12|warning: no use of x||err://C:\\src\\a.c:12"},
      {"C:\\src\\a.c:12:Warning: an ErRoR",
       "E|C:\\src\\a.c|12|Warning: an ErRoR||err://C:\\src\\a.c:12"},
      {"at c:/a.c:12:all fine", "P|c:/a.c|12|at c:/a.c:12:all fine||err://c:/a.c:12"},
      {"c:/error.c:12:all fine", "P|c:/error.c|12|c:/error.c:12:all fine||err://c:/error.c:12"},
      {"c:/a.c::error", "E|c:/a.c||error||lnk://"},
      {"see c:\\tmp\\x.map", "P|||see c:\\tmp\\x.map||lnk://"},
      {"Erreur dans c:\\tmp\\x.c", "P|c:\\tmp\\x.c||Erreur dans c:\\tmp\\x.c||lnk://"},
      {"AVERTI: c:/x.c?", "P|c:/x.c||AVERTI: c:/x.c?||lnk://"},
      {"c:\\a b\\c.asm(12) error", "P|c:\\a b\\c.asm(12) error||c:\\a b\\c.asm(12) error||lnk://"},
      {"error in /home/x.c", "P|||error in /home/x.c||lnk://"},
  };
  for (const auto& [line, expected] : rows) EXPECT_EQ(Parse(line), expected);
}

TEST_F(ParsedToolText, EachMessageIsWholeAndInOrder) {
  hub.SetViews(&views, &views);
  hub.ParseToolText("*** ERROR C 1 IN LINE 2 OF a.c : x\n*** WARNING L2 : y\nc:/a:1:z", nullptr,
                    "/help");
  const std::vector<std::string> expected = {
      R"(log <message Icon="2" ShowInReport="yes" Contain="x" Help="/help/C_1.htm" )"
      R"(Description="*** ERROR C 1 IN LINE 2 OF a.c : x" File="a.c" Line="2" ><type>1</type>)"
      "<header>*** ERROR C 1 IN LINE 2 OF a.c : x</header><link>err://a.c:2</link></message>",
      R"(log <message Icon="1" ShowInReport="yes" Contain="y" Help="/help/L2.htm" )"
      R"(Description="*** WARNING L2 : y" File="" Line="" ><type>2</type>)"
      "<header>*** WARNING L2 : y</header><link>lnk://</link></message>",
      R"(log <message Description="c:/a:1:z" File="c:/a" Line="1" >)"
      "<header>c:/a:1:z</header><link>err://c:/a:1</link></message>"};
  EXPECT_EQ(views.Take(), expected);
  for (const char* helpFolder : {static_cast<const char*>(nullptr), ""}) {
    hub.ParseToolText("*** WARNING L2 : y", nullptr, helpFolder);
    EXPECT_EQ(views.Take()[0].find("Help"), std::string::npos);
  }
}

TEST_F(ParsedToolText, LinesAreCutAsTheTokenizerCutsAndLoseNothingElse) {
  const struct {
    const char* name;
    const char* text;
    const char* expected;
  } rows[] = {
      {"nothing", "", ""},
      {"blanks and tabs only", " \t \r\n\n\t\n", ""},
      {"carriage returns leave a blank at the end", "a\tb \r\n\tc:\r",
       "P|||a b  ||lnk://\nP|||c: ||lnk://"},
      {"a quoted start is all of the line", "\"a.c\", line 3: error\nb",
       "P|||a.c||lnk://\n"
       "P|||b||lnk://"},
      {"a quote without end joins lines up to the next one", "'open\nb\nc' d\ne",
       "P|||open b c||lnk://\nP|||d||lnk://\nP|||e||lnk://"},
      {"bytes above 127", "\xe4\xff error", "P|||\xe4\xff error||lnk://"},
      {"rows take all", "*** ERROR L1 : x\nb <Row/>\nc", ""},
      {"rows are no other elements", "<row> <R ow", "P|||<row> <R ow||lnk://"},
  };
  for (const auto& row : rows) EXPECT_EQ(Parse(row.text), row.expected) << row.name;
  hub.ParseToolText(nullptr, nullptr, nullptr);
}

TEST_F(ParsedToolText, ATemplateIsTriedFirst) {
  const char* const line = "c:/a.c 12 Warning W3: text";
  const char* const plain = "P|c:/a.c 12 Warning W3||c:/a.c 12 Warning W3: text||lnk://";
  const struct {
    const char* name;
    const char* lineTemplate;
    const char* line;
    const char* expected;
  } rows[] = {
      {"all four words", "{SPECLINE} {SPECFILE}: {SPECERROR}: {SPECMESSAGE}",
       "12 c:\\a b.c: an error:   text", "E|c:\\a b.c|12|text||err://c:\\a b.c:12"},
      {"small letters; fields behind the file's four groups",
       "{specfile}: {SpecError} {specline}: {specmessage}", "c:/a.c: warning 7: x",
       "W|c:/a.c|7|x||err://c:/a.c:7"},
      {"no type: the message makes the kind", "^{SPECLINE}> {SPECMESSAGE}", "7> an error",
       "E||7|an error||lnk://"},
      {"neither type nor message", "^{SPECLINE}>", "7> an error", "P||7|7> an error||lnk://"},
      {"no file: a path beside an error word", "^{SPECLINE}>", "7> error c:/a.c",
       "P|c:/a.c|7|7> error c:/a.c||err://c:/a.c:7"},
      {"a line of another shape", "^{SPECLINE}> {SPECMESSAGE}", "*** ERROR L1 : x",
       "E|||x|/help/L1.htm|lnk://"},
      {"the template wins over the known shapes", "\\*\\*\\* {SPECERROR} L1 : {SPECMESSAGE}",
       "*** ERROR L1 : x", "E|||x||lnk://"},
      {"of a word that stands twice the later counts", "^{SPECLINE} {SPECLINE}>", "7 8>",
       "P||8|7 8>||lnk://"},
      {"groups of its own are not counted", "(a|b) {SPECLINE}", "b 7", "P||b|b 7||lnk://"},
      {"a quote swallows words", "\"{SPECFILE}\", line {SPECLINE}", line, plain},
      {"without words each line has its shape", "", "*** ERROR L1 : x",
       "P|||*** ERROR L1 : x||lnk://"},
      {"one that begins with the message", "{SPECMESSAGE}", "*** ERROR L1 : x",
       "E|||x|/help/L1.htm|lnk://"},
      {"a message behind a word", "{SPECLINE}{SPECMESSAGE}", "*** ERROR L1 : x",
       "E|||x|/help/L1.htm|lnk://"},
      {"more groups than there are", "{SPECFILE} {SPECFILE} {SPECLINE} {SPECERROR}",
       "*** ERROR L1 : x", "E|||x|/help/L1.htm|lnk://"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Parse(row.line, row.lineTemplate), row.expected) << row.name;
  EXPECT_EQ(Parse(std::string("7> a\n") + line, "^{SPECLINE}> {SPECMESSAGE}"),
            "P||7|7> a||lnk://\n" + std::string(plain))
      << "the template is of no use for the next call";
  EXPECT_EQ(Parse("7> a"), "P|||7> a||lnk://");
}

TEST_F(ParsedToolText, TheLogIsSavedOnceAtTheEndAndOnlyWhenEachMessageIs) {
  hub.SetLogFile("/tmp/log.xml");
  Parse("a\nb");
  EXPECT_TRUE(disk.TakeOperations().empty());
  hub.SetFlagBits(CBuildOutput::kSaveEachMessage);
  Parse("a\nb");
  EXPECT_EQ(disk.Operations("write").size() + disk.Operations("tail").size(), 1u);
}

// Returns "kind|file|line" of the lines that have a file and a line number. `first` is the column
// of the kind.
std::set<std::string> PlacesOf(const std::string& text, std::size_t first) {
  std::set<std::string> places;
  for (const std::string_view line : Split(text, '\n')) {
    const auto parts = Split(line, '|');
    if (parts.size() < first + 4 || parts[first + 1].empty() || parts[first + 2].empty()) continue;
    std::string place(parts[first]);
    places.insert(place.append("|").append(parts[first + 1]).append("|").append(parts[first + 2]));
  }
  return places;
}

// Compiler output for files whose paths have a drive: exactly the known positions are found, with
// and without a template.
TEST_F(ParsedToolText, EveryPlaceInRealTextWithDrivesIsFoundAndNoOther) {
  const std::pair<const char*, const char*> rows[] = {
      {"gcc/drive", nullptr},
      {"gcc/drive", "^{SPECFILE}:{SPECLINE}:[0-9]+: {SPECERROR}: {SPECMESSAGE}"},
      {"sdcc/drive", nullptr},
      {"sdcc/drive", "^{SPECFILE}:{SPECLINE}: {SPECERROR}: {SPECMESSAGE}"},
  };
  for (const auto& [log, lineTemplate] : rows) {
    const std::string path = testing::SourcePath(std::string("tests/data/toollogs/") + log);
    const auto expected = PlacesOf(testing::ReadBytes(path + ".expected"), 1);
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(PlacesOf(Parse(testing::ReadBytes(path + ".log"), lineTemplate), 0), expected) << log;
  }
}

// A view may reset the log, and even add more text, while a message is shown.
TEST_F(ParsedToolText, AResetInTheMidstLeavesTheRest) {
  struct Resetting : ILogView {
    explicit Resetting(CBuildOutput& output) : hub(output) {}
    void AddMessage(const CXmlNode& node) override {
      if (OrEmpty(node.GetAttrValue("Description")) != "7> a") return;
      hub.ResetLog();
      hub.ParseToolText("*** WARNING L1 : inner", "^x", nullptr);
    }
    void Clear() override {}
    CBuildOutput& hub;
  };
  Resetting view(hub);
  hub.SetViews(&view, nullptr);
  hub.ParseToolText("first\n7> a\n8> b", "^{SPECLINE}> {SPECMESSAGE}", nullptr);
  ASSERT_EQ(hub.GetRoot().GetChildCount(), 2);
  EXPECT_STREQ(hub.GetRoot().GetChild(0)->GetAttrValue("Contain"), "inner");
  EXPECT_STREQ(hub.GetRoot().GetChild(1)->GetAttrValue("Line"), "8");
}

}  // namespace
}  // namespace tarn
