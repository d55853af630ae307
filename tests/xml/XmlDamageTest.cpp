#include "xml/XmlDamage.h"

#include <gtest/gtest.h>

#include "xml/XmlNode.h"

namespace tarn {
namespace {

std::string FaultOf(const std::string& text, XmlTexts texts = XmlTexts::None) {
  CXmlNode node;
  return LoadWhole(node, text, texts, "f");
}

TEST(XmlDamage, ACutOrDamagedTextIsNamedWithItsLine) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "f:1: the file ends before its first element"},
      {"\n<a>\n<b/>\n", "f:4: the file ends inside <a>"},
      {"<a>\r\n<b x='", "f:2: incomplete tag of <b>; nothing after it is read"},
      {"<a>\n</b></a>", "f:2: </b> closes another element; nothing after it is read"},
      {"<a>\n<!-- x </a>", "f:2: <!-- without its end; nothing after it is read"},
      {"<a>\n\\<b/></a>", "f:2: a backslash before \"<\" makes the tag a part of the text of <a>"},
      {"<a>\n<b/>\n" + std::string(1, '\0') + "</a>", "f:3: a zero byte; nothing after it is read"},
      {"<a/>\n" + std::string(1, '\0'), "f:2: a zero byte; nothing after it is read"},
      {"<a>\n<b/>\n<<<<<<< ours\n</a>", "f:3: a merge conflict that was not resolved"},
      {"<a x='\n>>>>>>> theirs\n'/>", "f:2: a merge conflict that was not resolved"},
      {"<a>\n<b x='1' x='2'/></a>",
       "f:2: the attribute \"x\" is repeated; only the first one is "
       "read"},
      {"<a>\n b/><c/></a>", "f:2: stray text \"b/>\""},
      {"<a>\n<b/> c/></a>", "f:2: stray text \"c/>\""},
      {"<a/>\n<b/>", "f:2: content after the end of the root element, which is not read"},
  };
  for (const auto& [text, fault] : rows) {
    EXPECT_EQ(FaultOf(text), fault) << text;
    EXPECT_EQ(FaultOf(text, XmlTexts::InElements), fault) << text;
  }
  EXPECT_EQ(FaultOf("<a><b>\nt</b></a>"), "f:2: stray text \"t\"");
  EXPECT_EQ(FaultOf("<a><![CDATA[t]]></a>"), "f:1: a CDATA section, which is not read");
}

TEST(XmlDamage, AWholeTextHasNone) {
  const char* const texts[] = {
      "<?xml version='1.0'?>\r\n<!-- =======\n  <b> -->\n<?style x?>\n<a>\n\t<!-- <c "
      "--><b/>\n</a>\n",
      "\xEF\xBB\xBF<a x=\"<<<<<<< 1\" />\r\n<!-- end -->\r\n",
  };
  for (const char* text : texts) EXPECT_EQ(FaultOf(text), "") << text;
  EXPECT_EQ(FaultOf("<a><b>t\n=======</b><![CDATA[t]]></a>", XmlTexts::InElements), "");
}

}  // namespace
}  // namespace tarn
