#include <gtest/gtest.h>

#include "XmlDump.h"

namespace tarn {
namespace {

using test::Dump;
using test::Flat;
using test::Tree;

std::string Saved(const CXmlNode& node) {
  return node.ToString(g_xmlDisplayOptions);
}

TEST(XmlWriter, LayoutOfAFile) {
  const std::pair<const char*, const char*> rows[] = {
      {"<a x=\"\"></a>", "\r\n<a x=\"\" />"},
      {"<a> </a>", "\r\n<a> </a>"},
      {"<a>t<b/></a>", "\r\n<a>\r\n\t<b/>\r\n\tt\r\n</a>"},
      {"<a><b/>t<b>u</b></a>", "\r\n<a>\r\n\t<b/>\r\n\t<b>u</b>\r\n\tt\r\n</a>"},
      {"<a><!-- \"|\r\n --><![CDATA[\"|<>]]></a>",
       "\r\n<a>\r\n\t<!-- \"|\r\n -->\r\n\t<![CDATA[\"|<>]]>\r\n</a>"},
      {"<a x='<>&' y=&amp;>&amp;></a>", "\r\n<a x=\"<>&\" y=\"&amp;\" >&amp;></a>"},
      {"<a x='1 \"2\"' y='p|q'><b z=1><c/><d>t</d></b></a>",
       "\r\n<a x=\"1 &quot;2&quot;\" y=\"p&slash;q\" >\r\n\t<b z=\"1\" >\r\n\t\t<c/>"
       "\r\n\t\t<d>t</d>\r\n\t</b>\r\n</a>"},
      {"<a><?x?><b/></a>", "\r\n<a>\r\n\t<b/>\r\n</a>"},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(Saved(*Tree(text)), expected) << text;
}

TEST(XmlWriter, OptionsOfARun) {
  const auto tree = Tree("<a x=\"&quot;\">t<b>|</b></a>");
  CXmlDisplayOptions options;
  options.tabDepth = 2;
  options.quoteChar = '\'';
  EXPECT_EQ(tree->ToString(options),
            "\r\n\t\t<a x='&quot;' >\r\n\t\t\t<b>&slash;</b>\r\n\t\t\tt\r\n\t\t</a>");
  EXPECT_EQ(options.tabDepth, 2);
  options.newline = false;
  options.encodeEntities = false;
  EXPECT_EQ(tree->ToString(options), "<a x='\"' ><b>|</b>t</a>");
  options.encodeEntities = true;
  options.entityTable = &g_xmlEntitiesFull;
  std::string out = "kept";
  tree->AppendText(out, options, 1);
  EXPECT_EQ(out, "kept<a x='&quot;' ><b>&slash;</b>t</a>");
  options.newline = true;
  options.tabDepth = -3;
  EXPECT_EQ(tree->ToString(options), "\r\n<a x='&quot;' >\r\n<b>&slash;</b>\r\nt\r\n</a>");
}

TEST(XmlWriter, FinalBackslashCannotEatWhatFollows) {
  // A value, its encoding, and its encoding with the full table.
  const char* const rows[][3] = {
      {"C:\\inc\\", "C:\\inc\\\\", "C:&backslash;inc&backslash;"},
      {"\\", "\\\\", "&backslash;"},
      {"\\\\\\", "\\\\\\\\", "&backslash;&backslash;&backslash;"},
      {"\\\"", "\\&quot;", "&backslash;&quot;"},
  };
  CXmlDisplayOptions options;
  options.newline = false;
  for (const auto& [value, written, full] : rows) {
    CXmlNode node;
    node.SetName("a");
    node.AddAttr("p", value);
    node.AddAttr("q", "z");
    node.AddChild("b", value);
    const auto expected = [](const std::string& v) {
      return "<a p=\"" + v + "\" q=\"z\" ><b>" + v + "</b></a>";
    };
    options.entityTable = &g_xmlEntities;
    EXPECT_EQ(node.ToString(options), expected(written));
    EXPECT_EQ(Flat(*Tree(expected(written).c_str())), expected(written));
    options.entityTable = &g_xmlEntitiesFull;
    EXPECT_EQ(node.ToString(options), expected(full));
    CXmlNode again;
    again.LoadWithFullEntities(expected(full).c_str());
    EXPECT_STREQ(again.GetAttrValue("p"), value);
  }
}

TEST(XmlWriter, NamelessElementTakesNothingWithIt) {
  CXmlNode root;
  root.SetName("a");
  root.AddChild("Options")->AddChild("", "lost");
  root.AddChild("")->AddChild("x");
  root.AddChild("b");
  EXPECT_EQ(Saved(root), "\r\n<a>\r\n\t<Options/>\r\n\t<b/>\r\n</a>");
  EXPECT_EQ(Saved(CXmlNode()), "");
}

// Line breaks are dropped by reading but tabs aren't, so they add up: 3, 6, 9 tabs from a file with
// one level above.
TEST(XmlWriter, TabsOfAnIndentedFileGrowAsTheyAlwaysDid) {
  std::string file = "\r\n<r>\r\n\t<a>\r\n\t\t<b/>\r\n\t</a>\r\n</r>";
  for (const int tabs : {3, 6, 9}) {
    file = Saved(*Tree(file.c_str()));
    EXPECT_EQ(file, "\r\n<r>\r\n\t<a>\r\n\t\t<b/>\r\n" +
                        std::string(static_cast<std::size_t>(tabs), '\t') + "\r\n\t</a>\r\n</r>");
  }
}

TEST(XmlWriter, LoadSaveLoadIsStable) {
  const char* files[] = {
      "\r\n<a x=\"&quot;&slash;\" y=\"\" >&slash;</a>",
      "\r\n<a>\r\n\t<b/>\r\n\t<!-- c -->\r\n\t<d>t</d>\r\n\t<![CDATA[<&quot;]]>\r\n</a>",
  };
  for (const char* file : files) EXPECT_EQ(Saved(*Tree(file)), file);
}

TEST(XmlEntities, EncodeAndDecode) {
  const struct {
    const CXmlEntityTable& table;
    const char* plain;
    const char* encoded;
  } both[] = {
      {g_xmlEntities, "plain <>&'", "plain <>&'"},
      {g_xmlEntities, "\"a|b\"", "&quot;a&slash;b&quot;"},
      {g_xmlEntitiesFull, "\"|'&<>\xB2\\", "&quot;&slash;&apos;&amp;&lt;&gt;&square;&backslash;"},
      {g_xmlEntitiesFull, "&quot;", "&amp;quot;"},
  };
  for (const auto& row : both) {
    EXPECT_EQ(row.table.Encode(row.plain), row.encoded);
    EXPECT_EQ(row.table.Decode(row.encoded), row.plain);
  }
  const std::pair<const char*, const char*> decode[] = {
      {"&quot", "&quot"},   {"&&quot;", "&\""},   {"&quot;quot;", "\"quot;"},
      {"&nbsp;", "&nbsp;"}, {"&QUOT;", "&QUOT;"}, {"a\r\nb\r\r\nc\n\rd\r", "ab\rc\n\rd\r"},
      {"\r\r\n\n", "\r\n"},
  };
  for (const auto& [text, decoded] : decode) EXPECT_EQ(g_xmlEntities.Decode(text), decoded) << text;
  EXPECT_EQ(g_xmlEntities.Encode("&quot;"), "&quot;");
  EXPECT_EQ(g_xmlEntities.Decode(nullptr), "");
}

TEST(XmlEntities, TheFirstFittingRowWins) {
  const CXmlEntity rows[] = {{'a', ""}, {'b', "&x"}, {'c', "&x;"}, {'b', "&y"}};
  const CXmlEntityTable table(rows);
  EXPECT_EQ(table.Decode("&x;&y"), "b;b");
  EXPECT_EQ(table.Encode("abc"), "&x&x;");
}

}  // namespace
}  // namespace tarn
