#include "output/LogRichText.h"

#include <gtest/gtest.h>

#include "output/LogLink.h"
#include "xml/XmlNode.h"

namespace tarn {
namespace {

// Start of every line.
#define HEAD                                                                                    \
  "{\\rtf1 {\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue0;\\red0\\green0\\blue255;" \
  "\\red0\\green255\\blue0;} "

std::string RichTextOf(const char* element) {
  CXmlNode node;
  node.Load(element, g_xmlParseInfo);
  return MakeLogRichText(node);
}

TEST(LogRichTextTest, EachKindOfLineIsWrittenByteForByte) {
  const struct {
    const char* name;
    const char* element;
    const char* richText;
  } rows[] = {
      {"plain", R"(<message Icon="0" File="a.c" Line="3" Description="make all"/>)",
       HEAD "\\cf2 make all \\par }"},
      {"a warning, with every field",
       R"(<message Icon="1" Description="w" ChannelName="a b" TimeL="7" TimeH="0" File="/a b/c.c")"
       R"( Line="12" Help="/h/x y.html"/>)",
       HEAD "{\\field{\\*\\fldinst { HYPERLINK channel_name<a b>TimeL<7>TimeH<0>file</a?b/c.c>"
            "line<12>help</h/x?y.html> }} {\\fldrslt {\\cf3\\ulnone w}}} \\par }"},
      {"an error; backslashes and blanks of its path",
       R"(<message Icon="2" Description="C:\a b\c.c:12: e" File="C:\a b\c.c" Line="12"/>)",
       HEAD "{\\field{\\*\\fldinst { HYPERLINK file<C:\\\\a?b\\\\c.c>line<12> }} {\\fldrslt "
            "{\\cf1\\ulnone C:\\\\a b\\\\c.c:12: e}}} \\par }"},
      {"an error with nothing to lead to",
       R"(<message Icon="2" Description="e" TimeL="0" TimeH="0"/>)",
       HEAD "{\\field{\\*\\fldinst { HYPERLINK  }} {\\fldrslt {\\cf1\\ulnone e}}} \\par }"},
      {"fields that are there and empty",
       R"(<message Icon="2" Description="e" ChannelName="" File="" Line="" Help="" TimeH="9" TimeL=""/>)",
       HEAD "{\\field{\\*\\fldinst { HYPERLINK TimeH<9>file<>line<>help<> }} {\\fldrslt "
            "{\\cf1\\ulnone e}}} \\par }"},
      {"a heading", R"(<message Icon="5" File="a.c" Description="Building a"/>)",
       HEAD "\\cf2 \\b  \\par Building a \\b0 \\par }"},
      {"a note with a file; of the target only that",
       R"(<message Icon="3" File="C:\a b.c" Line="4" Help="h" Description="see"/>)",
       HEAD "{\\field{\\*\\fldinst { HYPERLINK file<C:\\\\a?b.c> }} {\\fldrslt {\\cf2\\ulnone "
            "see}}} \\par }"},
      {"a note", R"(<message Icon="3" Description="see"/>)", HEAD "\\cf2\\ulnone see \\par }"},
      {"no icon, empty file", R"(<message File="" Line="3" Description="x"/>)",
       HEAD "\\cf2\\ulnone x \\par }"},
      {"no icon, file", R"(<message File="a.c" Description="x"/>)",
       HEAD
       "{\\field{\\*\\fldinst { HYPERLINK file<a.c> }} {\\fldrslt {\\cf2\\ulnone x}}} \\par }"},
      {"an icon in another form", R"(<message Icon="0x2" Description="x"/>)",
       HEAD "{\\field{\\*\\fldinst { HYPERLINK  }} {\\fldrslt {\\cf1\\ulnone x}}} \\par }"},
      {"nothing at all", "<message/>", HEAD "\\cf2\\ulnone  \\par }"},
      {"braces stay", R"(<message Icon="0" Description="f() { }}"/>)",
       HEAD "\\cf2 f() { }} \\par }"},
      {"what was written for strict readers",
       R"(<message Icon="0" Description="&#8216;a&#8217; &lt;b&gt; &amp; &#92; &foo;"/>)",
       HEAD "\\cf2 \xE2\x80\x98"
            "a\xE2\x80\x99 <b> & \\\\ &foo; \\par }"},
      {"a line of the host's own", R"(<Output>C:\done</Output>)", HEAD "\\cf2 C:\\\\done \\par }"},
      {"a line of the host's own is not encoded", "<Output>a &lt; b</Output>",
       HEAD "\\cf2 a &lt; b \\par }"},
      {"another element with a value", R"(<message>x</message>)", HEAD "\\cf2\\ulnone  \\par }"},
  };
  for (const auto& row : rows) EXPECT_EQ(RichTextOf(row.element), row.richText) << row.name;
}

TEST(LogLinkTest, TargetsAreReadFieldByField) {
  const struct {
    const char* target;
    const char* read;
  } rows[] = {
      {"", "- - 0 0 0"},
      {"file<C:\\a?b.c>line<12>help</h?1>", "/h 1 C:\\a b.c 12 0 0"},
      {"file<>line<>", "-  0 0 0"},
      {"file<a>line<0x10>", "- a 16 0 0"},
      {"file<line>line<3>", "- line 3 0 0"},
      {"file<a>b>line<x>", "- a 0 0 0"},
      {"TimeL<5>TimeH<-2>line<9>", "- - 9 5 -2"},
      {"TimeL<x5>TimeH<>", "- - 0 0 0"},
      {"channel_name<file<a>file<b>", "- a 0 0 0"},  // the first marker wins, in any position
      {"file<never ended", "- never ended 0 0 0"},
      {"file", "- - 0 0 0"},
  };
  for (const auto& row : rows) {
    const LogLink link = ReadLinkTarget(row.target);
    EXPECT_EQ(link.help.value_or("-") + " " + link.file.value_or("-") + " " +
                  std::to_string(link.line) + " " + std::to_string(link.timeLow) + " " +
                  std::to_string(link.timeHigh),
              row.read)
        << row.target;
  }
}

}  // namespace
}  // namespace tarn
