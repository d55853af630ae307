#include <gtest/gtest.h>

#include <cstring>

#include "XmlDump.h"

namespace tarn {
namespace {

using test::Dump;
using test::Visible;

// Returns "tree -> rest", or "tree -> null, error code at rest, text".
std::string LoadInto(CXmlNode& node, const char* text, CXmlParseInfo& info) {
  const char* end = node.Load(text, info);
  std::string out = Dump(node) + " -> " + (end ? "'" + Visible(end) + "'" : "null");
  if (info.errorOccurred) {
    out += ", error " + std::to_string(info.errorCode) + " at '" + Visible(info.errorPosition) +
           "', " + info.errorText;
  }
  return out;
}

std::string LoadFresh(const std::string& text) {
  // A heap copy of exact size, so that a sanitizer detects a read after the terminator.
  const auto buffer = std::make_unique<char[]>(text.size() + 1);
  std::memcpy(buffer.get(), text.c_str(), text.size() + 1);
  CXmlNode node;
  CXmlParseInfo info;
  return LoadInto(node, buffer.get(), info);
}

void ExpectLoads(std::initializer_list<std::pair<const char*, const char*>> rows) {
  for (const auto& [text, expected] : rows) EXPECT_EQ(LoadFresh(text), expected) << text;
}

TEST(XmlReader, FindsTheRootElement) {
  ExpectLoads({
      {"", " -> null"},
      {"no tag", " -> null"},
      {"</a>", " -> '</a>'"},
      {"junk <a/>rest", "a -> 'rest'"},
      {"<a/><b/>", "a -> '<b/>'"},
      {"<?xml version=\"1.0\"?>\r\n<a/>", "a -> ''"},
      {"<!-- c --><![CDATA[d]]> <?x?> <!-- e --><a/>", "a -> ''"},
      {"<?x?>", " -> null"},
      {"<?x?> junk><a/>", "unk(a) -> ''"},
      {"< a/>", " -> null, error 4 at 'a/>', <> attribute has error "},
      {"< a=\"1\"/>", "[a=1] -> ''"},
      {"<>x</>y", "'x' -> 'y'"},
  });
}

TEST(XmlReader, EndOfNameAndTag) {
  ExpectLoads({
      {"<", " -> null"},
      {"<a>", "a -> ''"},
      {"<a/", "a -> null, error 1 at '', Element must be closed."},
      {"<a x=\"1\"/x>", "a[x=1] -> null, error 1 at 'x>', Element must be closed."},
      {"<a\tx=\"1\"\r\n>t</a>", "a[x=1]'t' -> ''"},
      {"<a\fb>t</a>", "a\fb't' -> null, error 3 at '', '<a\fb> ... </a>' is not wel-formed."},
      {"<a:b.c-d/>", "a:b.c-d -> ''"},
  });
}

TEST(XmlReader, Attributes) {
  ExpectLoads({
      {"<a x=1 y=\"2\"/>", "a[x=1][y=2] -> ''"},
      {"<a x=1/>", "a[x=1/] -> ''"},
      {"<a x=1\ty=2>", "a[x=1\\ty=2] -> ''"},
      {"<a x=1\\ y=2>", "a[x=1\\][y=2] -> ''"},
      {"<a x=>t</a>", "a[x=]'t' -> ''"},
      {"<a x=1", "a[x=1] -> null"},
      {"<a b c=\"d\"/>", "a[b=][c=d] -> ''"},
      {"<a b\tc=\"d\"/>", "a[b\\tc=d] -> ''"},
      {"<a x = '1' >", "a[x=1] -> ''"},
      {"<a x='\"' y=\"'\"/>", "a[x=\"][y='] -> ''"},
      {"<a x=\"1\"y=\"2\"/>", "a[x=1][y=2] -> ''"},
      {"<a x=\"<b>/\"/>", "a[x=<b>/] -> ''"},
      {"<a =\"1\"/>", "a[=1] -> ''"},
      {"<a x=\"1\" x=\"2\"/>", "a[x=1][x=2] -> ''"},
      {"<a b>t</a>", "a -> null, error 4 at 'b>t</a>', <a> attribute has error "},
      {"<a b>t</a> c", "a[b>t</a>=] -> null, error 4 at 'c', <a> attribute has error "},
      {"<a x=\"1\"", "a[x=1] -> null"},
      {"<a x=\"1\" ", "a[x=1] -> null, error 4 at '', <a> attribute has error "},
  });
}

TEST(XmlReader, BackslashProtectsTheNextByte) {
  ExpectLoads({
      {"<a x=\"1\\\" y=\"2\"/>",
       "a[x=1\\\" y=] -> null, error 4 at '2\"/>', <a> attribute has error "},
      {"<a p=\"C:\\inc\\\" q=\"z\" />", "a[p=C:\\inc\\\" q=][z\"=] -> ''"},
      {"<a x=\"1\\\\\" y=\"2\"/>", "a[x=1\\\\][y=2] -> ''"},
      {"<a>1\\<b/>2</a>", "a'1\\<b/>2' -> ''"},
      {"<a>1\\\\<b/></a>", "a'1\\\\'(b) -> ''"},
      {"<a>1\\", "a'1\\' -> ''"},
      {"<a x=\"1\\", "a[x=1\\] -> null"},
  });
}

TEST(XmlReader, TextBesideChildren) {
  ExpectLoads({
      {"<a>text", "a'text' -> ''"},
      {"<a>one<b/>two<c/>three</a>", "a'one'(b c) -> ''"},
      {"<a>  <b/>x</a>", "a'x'(b) -> ''"},
      {"<a> <b/>\t<c/></a>", "a'\\t'(b c) -> ''"},
      {"<a>\r\n\t<b/>\r\n\t\t<c/>\r\n</a>", "a(b c) -> ''"},
      {"<a>\t<b/>\r\n\t\t\t\t\t\t<c/> </a>", "a' '(b c) -> ''"},
      {"<a><b>\r\n\t\t<c/>\r\n\t</b></a>", "a(b'\\t'(c)) -> ''"},
      {"<a><b>t</b><c>u</c></a>", "a(b't' c'u') -> ''"},
      {"<a>one<b/> two", "a'one'(b) -> null"},
      {"<a><b/> ", "a' '(b) -> ''"},
      {"<a>\r\r\n\n<b/></a>", "a'\\r\\n'(b) -> ''"},
      {"<a>\r\r\n\n<b/>", "a(b) -> ''"},
      {"<a>\r\r\n\n<b/> <c>", "a' '(b c) -> ''"},
      {"<a>\v\f<b/>x</a>", "a'x'(b) -> ''"},
  });
}

TEST(XmlReader, CloseTags) {
  ExpectLoads({
      {"<a><b>", "a(b) -> ''"},
      {"<a></b>", "a -> null, error 3 at '', '<a> ... </b>' is not wel-formed."},
      {"<a><b></a>", "a(b) -> null, error 3 at '', '<b> ... </a>' is not wel-formed."},
      {"<a></b", "a -> null, error 2 at 'b', it must be closed with </a>"},
      {"<a></", "a -> null, error 2 at '', it must be closed with </a>"},
      {"<a></ a>x", "a -> 'x'"},
      {"<a></a >x", "a -> '>x'"},
      {"<r><a></a ></r>", "r'>'(a) -> ''"},
      {"<a></a\n>", "a -> null, error 3 at '', '<a> ... </a\n>' is not wel-formed."},
      {"<a></A>", "a -> null, error 3 at '', '<a> ... </A>' is not wel-formed."},
      {"<a>< b=\"1\">x<c/></><d/></a>", "a(d) -> ''"},
      {"<a>< ", "a -> null, error 4 at '', <> attribute has error "},
  });
}

TEST(XmlReader, CommentsSectionsAndInstructions) {
  ExpectLoads({
      {"<a><!-- c --><b/></a>", "a(#COMMENT' c ' b) -> ''"},
      {"<a>1<![CDATA[<x>]]></a>", "a'1'(#CDATA'<x>') -> ''"},
      {"<a><![cdata[\r\n\\&quot;]]></a>", "a(#CDATA'\\r\\n\\&quot;') -> ''"},
      {"<a><!--&quot;\r\n--><!----></a>", "a(#COMMENT'&quot;\\r\\n' #COMMENT) -> ''"},
      {"<a><!--->x</a>", "a'x'(#COMMENT) -> ''"},
      {"<a><?x?></a>", "a -> null, error 1 at 'a>', Element must be closed."},
      {"<a><?x?><b/></a>", "a(b) -> ''"},
      {"<a><?x?> <!--c--><b/></a>", "a(#COMMENT'c' b) -> ''"},
      {"<a><?x", "a -> null"},
      {"<a><?x?>", "a -> null"},
      {"<a><!-- c", "a -> null"},
      {"<a><b/><![CDATA[ c ]]", "a(b) -> null"},
      {"<!-- <a/>", " -> null"},
      {"<!DOCTYPE a><a/>",
       "!DOCTYPE -> null, error 4 at 'a><a/>', <!DOCTYPE> attribute has error "},
  });
}

TEST(XmlReader, Decoding) {
  ExpectLoads({
      {"<a x=\"&quot;&slash;&amp;&#65;\">&quot;&slash;&lt;</a>",
       "a[x=\"|&amp;&#65;]'\"|&lt;' -> ''"},
      {"<a x=\"1\r\n2\n3\r4\">1\r\n2\n3\r4</a>", "a[x=12\\n3\\r4]'12\\n3\\r4' -> ''"},
      {"<a &quot;=\"1\"/>", "a[&quot;=1] -> ''"},
      {"<a x=\"\\&quot;\" y=\"\\\r\n\">\\&quot;</a>", "a[x=\\\"][y=\\]'\\\"' -> ''"},
      {"<a x=&quot;\r\n>", "a[x=\"] -> ''"},
      {"<r><a>\r\n t&quot;</a><a> \r\n<b/>\\\r\n</a></r>", "r(a' t\"' a'\\'(b)) -> ''"},
  });
}

// White space is distinguished from text without decoding if the table allows it.
TEST(XmlReader, ReferencesForWhiteSpaceAndOfWhiteSpace) {
  const CXmlEntity rows[] = {{' ', "&sp;"}, {'x', "\t"}};
  const CXmlEntityTable table(rows);
  CXmlParseInfo info;
  info.entityTable = &table;
  CXmlNode node;
  EXPECT_EQ(LoadInto(node, "<a><b>&sp;<c/>t<c/>u</b><b>\t<c/>t</b><b> <c/>t</b></a>", info),
            "a(b't'(c c) b'x'(c) b't'(c)) -> ''");
}

TEST(XmlReader, FailureKeepsWhatWasRead) {
  ExpectLoads({
      {"<a x=\"1\"><b>t</b><c y=\"2\"><d/>u</e></c><f/></a>",
       "a[x=1](b't' c[y=2]'u'(d)) -> null, error 3 at '</c><f/></a>', "
       "'<c> ... </e>' is not wel-formed."},
      {"<a><b/><c x=\"1\" y", "a(b c[x=1]) -> null, error 4 at 'y', <c> attribute has error "},
      {"<a><b/><c", "a(b) -> null"},
  });
}

TEST(XmlReader, SwitchesOfTheParse) {
  CXmlParseInfo info;
  info.forceParse = true;
  CXmlNode node;
  EXPECT_EQ(LoadInto(node, "<a></b>x<c></d></c></a>y", info), "a(c) -> 'y'");
  info.decodeEntities = false;
  EXPECT_EQ(LoadInto(node, "<a x=\"&quot;\r\n\"/>", info), "a[x=&quot;\\r\\n] -> ''");
  info.decodeEntities = true;
  info.entityTable = nullptr;
  EXPECT_EQ(LoadInto(node, "<a x=\"&quot;\r\n\"/>", info), "a[x=&quot;\\r\\n] -> ''");
  node.LoadWithFullEntities("<a x=\"&lt;&amp;amp;&gt;&backslash;\">&square;&apos;</a>");
  EXPECT_EQ(Dump(node), "a[x=<&amp;>\\]'\xB2''");
  CXmlNode empty;
  EXPECT_EQ(empty.Load(static_cast<const char*>(nullptr), info), nullptr);
}

TEST(XmlReader, LoadingAgainKeepsNameAndValueWhereNothingCame) {
  CXmlNode node;
  CXmlParseInfo info;
  LoadInto(node, "<a x=\"1\">t<b/></a>", info);
  EXPECT_EQ(LoadInto(node, "", info), "a't' -> null");
  EXPECT_EQ(LoadInto(node, "<c y=\"2\">u<d/></c>", info), "c[y=2]'t'(d) -> ''");
  node.SetValue(" ");
  EXPECT_EQ(LoadInto(node, "< >u</c>", info), "c'u' -> ''");
  node.SetValue("\r\n ");
  EXPECT_EQ(LoadInto(node, "<e></e>", info), "e' ' -> ''");
}

TEST(XmlReader, CommentInFrontOfAnAttachedNodeGoesToItsParent) {
  CXmlNode parent;
  CXmlNode* child = parent.AddChild("c");
  CXmlParseInfo info;
  EXPECT_EQ(LoadInto(*child, "<?x?><!--1--><a/>", info), "c -> '<a/>'");
  EXPECT_EQ(Dump(parent), "(c #COMMENT'1')");
}

TEST(XmlReader, OnlyTheFirstErrorIsRecorded) {
  CXmlParseInfo info;
  const char* first = "<a/";
  CXmlNode node;
  EXPECT_EQ(node.Load(first, info), nullptr);
  EXPECT_EQ(node.Load("<a></b>", info), nullptr);
  EXPECT_EQ(info.errorCode, 1);
  EXPECT_EQ(info.errorPosition, first + 3);
}

}  // namespace
}  // namespace tarn
