#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "components/tools/MessageFile.h"
#include "output/BuildOutput.h"
#include "share/ShippedFiles.h"
#include "support/MemoryFileSystem.h"

namespace tarn::shipped {
namespace {

// Returns the page that a conforming processor makes of a log. If the processor rejects it, fails
// the test and returns an empty string.
std::string Transform(const std::string& log) {
  const testing::ScratchFolder scratch;
  scratch.Write("log.xml", log);
  const std::string command = "xsltproc --nonet '" + Path("config/message.xslt") + "' '" +
                              scratch / "log.xml" + "' >'" + scratch / "page" + "' 2>'" +
                              scratch / "errors" + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << ReadBytes(scratch / "errors");
  return ReadBytes(scratch / "page");
}

std::string Between(const std::string& text, const std::string& start, const std::string& end) {
  const std::size_t from = text.find(start);
  if (from == std::string::npos) return "no " + start;
  const std::size_t first = from + start.size();
  return text.substr(first, text.find(end, first) - first);
}

std::string Message(const std::string& attributes, const std::string& text,
                    const std::string& type) {
  return "\r\n\t<message " + attributes + "Description=\"" + text +
         "\" >\r\n\t\t<link>0</link>\r\n\t\t<type>" + type + "</type>\r\n\t\t<header>" + text +
         "</header>\r\n\t\t" + text + "\r\n\t</message>";
}

// Returns a log as written by Tarn, with its root and its style sheet line in either form.
std::string Log(const std::string& root, const std::string& styleSheetLine,
                const std::string& messages) {
  return "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n" + styleSheetLine + "\r\n\r\n<" +
         root + ">" + messages + "\r\n</" + root + ">";
}

const char* const kSavedLine = "<?xml-stylesheet type=\"text/xsl\" href=\"message.xslt\"?>";
const char* const kResetLine = "<?xml-stylesheet href=\"message.xslt\" type=\"text/xsl\"?>";

TEST(StyleSheet, ALogBeforeOrAfterItsFirstResetThatGivesNoPage) {
  const std::string messages = Message("Icon=\"5\" ", "Build: blinky", "5");
  const std::string before = Transform(Log("Messages", kSavedLine, messages));
  EXPECT_EQ(before, Transform(Log("output", kResetLine, messages)));
  EXPECT_EQ(Between(before, "<body>", "</body>"),
            "<h1>Build log</h1><p class=\"summary\">no errors, no warnings</p><ol>"
            "<li class=\"heading\"><span class=\"kind\"></span>"
            "<span class=\"text\">Build: blinky</span></li></ol>");
}

TEST(StyleSheet, LinesThatGetLostOrThatOnlyColourTellsApart) {
  const std::string messages =
      Message("Icon=\"2\" ", "bad", "1") + Message("Icon=\"1\" ", "odd", "2") +
      Message("Icon=\"1\" Count=\"6\" ", "odd again", "2") +
      "\r\n\t<Output>said by the host</Output>" + Message("", "plain", "3") +
      "\r\n\t<message >\r\n\t\t<header>only a header</header>\r\n\t</message>";
  const std::string page = Transform(Log("output", kSavedLine, messages));
  EXPECT_EQ(Between(page, "<title>", "</title>"), "Build log: 1 error, 7 warnings");
  EXPECT_EQ(Between(page, "<ol>", "</ol>"),
            R"(<li class="error"><span class="kind">error</span><span class="text">bad</span>)"
            R"(</li><li class="warning"><span class="kind">warning</span><span class="text">odd)"
            R"(</span></li><li class="warning"><span class="kind">warning</span><span)"
            R"( class="text">odd again</span></li><li><span class="kind"></span><span)"
            R"( class="text">said by the host</span></li><li class="plain"><span class="kind">)"
            R"(</span><span class="text">plain</span></li><li class="plain"><span class="kind">)"
            R"(</span><span class="text">only a header</span></li>)");
}

TEST(StyleSheet, APlaceThatLeadsElsewhere) {
  const struct {
    const char* name;
    std::string file;
    const char* line;
    std::string place;
  } rows[] = {
      {"whole path", "/home/me/a.c", "12", "<a href=\"file:///home/me/a.c\">/home/me/a.c:12</a>"},
      {"bytes with a meaning in addresses", "/a b/100%/#?.c", "1",
       "<a href=\"file:///a%20b/100%25/%23%3F.c\">/a b/100%/#?.c:1</a>"},
      {"drive", "C:\\src\\a.c", "7", "<a href=\"file:///C:/src/a.c\">C:\\src\\a.c:7</a>"},
      {"relative, so no link", "src\\a.c", "7", "src\\a.c:7"},
      {"no line", "/a.c", "", "<a href=\"file:///a.c\">/a.c</a>"},
      {"too long to escape", "/" + std::string(5000, 'a'), "1",
       "/" + std::string(5000, 'a') + ":1"},
  };
  for (const auto& row : rows) {
    const std::string message =
        Message("File=\"" + row.file + "\" Line=\"" + row.line + "\" Icon=\"2\" ", "x", "1");
    const std::string page = Transform(Log("output", kSavedLine, message));
    EXPECT_EQ(Between(page, "<span class=\"place\">", "</span>"), row.place) << row.name;
  }
}

// The hub's own log file, including the tool manager's messages.
TEST(StyleSheet, ALogOfToolMessagesThatAConformingReaderRefuses) {
  tarn::testing::MemoryFileSystem disk;
  const std::string text = "a.c:1:2: error: expected '<' & \"foo\"|bar ]]> \\";
  disk.AddFile("/tmp/log.xmlt.xml",
               tools::MessageFileText({{tools::Severity::Error, text, text, "/p/a.c", "1"}}));
  CBuildOutput hub(disk);
  hub.SetLogFile("/tmp/log.xml");
  hub.MergeToolFile("/tmp/log.xmlt.xml");
  hub.SaveLog();
  const std::string page = Transform(disk.BytesOf("/tmp/log.xml").value_or(""));
  EXPECT_EQ(Between(page, "<span class=\"text\">", "</span>"),
            "a.c:1:2: error: expected '&lt;' &amp; \"foo\"|bar ]]&gt; \\ ");
}

}  // namespace
}  // namespace tarn::shipped
