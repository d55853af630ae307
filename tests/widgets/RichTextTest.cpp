#include "widgets/RichText.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

// Each run as its text followed by its format: colour, B for bold, <target>.
std::string Dump(std::string_view richText) {
  const RichText read = ReadRichText(richText);
  std::string dump;
  std::size_t end = 0;
  for (const RichTextRun& run : read.runs) {
    EXPECT_EQ(run.range.start, end);
    end = run.range.end;
    std::string text = read.text.substr(run.range.start, run.range.Length());
    for (std::size_t at = 0; (at = text.find('\n', at)) != text.npos;) text.replace(at, 1, "/");
    char color[16];
    std::snprintf(color, sizeof color, "%06x", run.color);
    dump += "[" + text + "]" + color + (run.isBold ? "B" : "");
    if (run.target) dump += "<" + *run.target + ">";
  }
  EXPECT_EQ(end, read.text.size());
  return dump;
}

struct Row {
  const char* name;
  std::string richText;
  const char* dump;
};

const std::string kColors = "{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}";

// A log line with a link, as the log writes it.
std::string Link(const std::string& address, const std::string& text) {
  return "{\\rtf1 " + kColors + " {\\field{\\*\\fldinst { HYPERLINK " + address +
         " }} {\\fldrslt {\\cf2\\ulnone " + text + "}}} \\par }";
}
std::string Plain(const std::string& text) {
  return "{\\rtf1 " + kColors + " \\cf1 " + text + " \\par }";
}

TEST(RichTextTest, WhatIsWrittenIsRead) {
  const Row rows[] = {
      {"nothing", "", ""},
      {"no rich text", "a {b} \\c", "[a {b} \\c]000000"},
      {"an empty one", "{\\rtf1 }", ""},
      {"a colour", Plain("a"), "[ ]000000[a /]0000ff"},
      {"a colour that the table lacks", "{\\rtf1 \\cf7 a\\cf99999999999 b}", "[ab]000000"},
      {"weight", "{\\rtf1 a\\b  b\\b0 c\\b1 d}", "[a]000000[ b]000000B[c]000000[d]000000B"},
      {"what a group sets ends with it", "{\\rtf1 a{\\b b}\\par c}",
       "[a]000000[b]000000B[/c]000000"},
      {"escapes", "{\\rtf1 \\\\x\\{\\}}", "[\\x{}]000000"},
      {"unknown words and a lone backslash", "{\\rtf1\\ansi0\\ulnone a\\", "[a\\]000000"},
      {"a link", Link("file<C:\\\\a?b.c>line<1>", "x"),
       "[ ]000000[x]ff0000<file<C:\\a?b.c>line<1>>[ /]000000"},
      {"a link to nothing", Link("", "x"), "[ ]000000[x]ff0000<>[ /]000000"},
      {"a field that is no link", "{\\rtf1 {\\field{\\*\\fldinst PAGE}{\\fldrslt 7}}}",
       "[7]000000"},
      {"cut in the middle", Link("file<a>", "x").substr(0, 100), "[ ]000000"},
  };
  for (const Row& row : rows) EXPECT_EQ(Dump(row.richText), row.dump) << row.name;
}

TEST(RichTextTest, AToolsTextShowsWhole) {
  const Row rows[] = {
      {"a brace that opens", Plain("f(int) {"), "[ ]000000[f(int) { /]0000ff"},
      {"a brace that closes", Plain("a } b"), "[ ]000000[a } b /]0000ff"},
      {"both", Plain("{x} }{"), "[ ]000000[{x} }{ /]0000ff"},
      {"braces at both ends of a link", Link("file<a>", "}}x{{"),
       "[ ]000000[}}x{{]ff0000<file<a>>[ /]000000"},
      {"only braces", Link("file<a>", "}"), "[ ]000000[}]ff0000<file<a>>[ /]000000"},
      {"a brace and an escaped word", Plain("{\\\\par}"), "[ ]000000[{\\par} /]0000ff"},
      {"braces in an address", Link("file<}}{{a}>", "x"),
       "[ ]000000[x]ff0000<file<}}{{a}>>[ /]000000"},
      {"words in an address", Link("line<\\par\\*\\b>", "x"),
       "[ ]000000[x]ff0000<line<\\par\\*\\b>>[ /]000000"},
      {"control bytes", Plain(std::string("a\0b\r\nc\td\x1B\x7F", 10)),
       "[ ]000000[a b  c\td   /]0000ff"},
      {"bytes beyond ASCII", Plain("\xC3\xA4\xFF"), "[ ]000000[\xC3\xA4\xFF /]0000ff"},
  };
  for (const Row& row : rows) EXPECT_EQ(Dump(row.richText), row.dump) << row.name;
}

TEST(RichTextTest, HostileTextsAreReadToTheirEnd) {
  constexpr std::size_t kLength = 1 << 15;
  for (const std::string piece : {"a", "{", "}", "{}", "}{", "\\\\", "{\\b ", "{\\field ", " ;",
                                  "{\\fldrslt ", "{\\*\\fldinst ", "\\par }"}) {
    std::string text;
    while (text.size() < kLength) text += piece;
    for (const std::string& line : {Plain(text), Link(text, text)}) {
      const RichText read = ReadRichText(line);
      EXPECT_LE(read.text.size(), line.size()) << piece;
      const bool isText = piece[0] != '{' || piece.size() <= 2;
      EXPECT_GE(read.text.size(), isText ? kLength / 3 : 1u) << piece;
    }
  }
}

}  // namespace
}  // namespace tarn
