#include "xml/XmlEscape.h"

#include <gtest/gtest.h>

#include "xml/XmlNode.h"

namespace tarn {
namespace {

TEST(XmlEscape, WhatAConformingReaderWouldRejectOrTakeForSomethingElse) {
  const std::pair<const char*, const char*> rows[] = {
      {"a < b && c > d", "a &lt; b &amp;&amp; c &gt; d"},
      {"a|b 'a' \"b\"", "a&#124;b 'a' \"b\""},
      {"&lt; &#65; &quot;", "&amp;lt; &amp;#65; &amp;quot;"},
      {"UTF-8 \xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "UTF-8 &#233; &#8364; &#128512;"},
      {"Latin-1 \xE9t\xE9 \xC3", "Latin-1 \xE9t\xE9 \xC3"},
      {"overlong, surrogate, no character \xC0\xBC \xED\xA0\x80 \xEF\xBF\xBF",
       "overlong, surrogate, no character \xC0\xBC \xED\xA0\x80 \xEF\xBF\xBF"},
  };
  for (const auto& [text, encoded] : rows) {
    EXPECT_EQ(EscapeXml(text), encoded);
    EXPECT_EQ(UnescapeXml(encoded), text);
    // CXmlNode writes and reads the encoded string unchanged.
    CXmlNode node;
    node.SetName("a");
    node.SetAttrValue("t", encoded);
    CXmlNode read;
    read.Load(node.ToString(g_xmlDisplayOptions), g_xmlParseInfo);
    EXPECT_STREQ(read.GetAttrValue("t"), encoded);
  }
  EXPECT_EQ(EscapeXml(std::string("a\x01\r\n\0b\tc", 8)), "a    b\tc");
}

TEST(XmlEscape, WhatOnlyLooksLikeAReferenceStays) {
  for (const char* text : {"&", "&;", "&#;", "&#x;", "&#0;", "&#xD800;", "&#x110000;", "&#-5;",
                           "&#99999999999;", "&slash;", "&nbsp;", "&lt", "a & b;", "&#12a;"}) {
    EXPECT_EQ(UnescapeXml(text), text);
  }
  EXPECT_EQ(UnescapeXml("&#x41;&#xe9;&apos;&quot;&amp;amp;"), "A\xC3\xA9'\"&amp;");
}

TEST(XmlEscape, AFileWithNamesThatAConformingReaderRejects) {
  EXPECT_EQ(
      ToConformingXml("<?xml version=\"1.0\"?>\r\n\r\n<a x=\"R&D <1> &slash; &quot;&lt;\" y=\"\" "
                      ">\r\n\t<b/>\r\n\t<c>R&D &slash; \"\xC3\xA9\" &#124; > </c>\r\n</a>"),
      "<?xml version=\"1.0\"?>\r\n\r\n<a x=\"R&amp;D &lt;1&gt; &#124; &quot;&lt;\" y=\"\" "
      ">\r\n\t<b/>\r\n\t<c>R&amp;D &#124; \"&#233;\" &#124; &gt; </c>\r\n</a>");
  for (const char* text : {"", "<", "<a", "<a x=\"", "<a x=\"1", "text", "<a x=\"1\"", "<a>\r\nb",
                           "<!-- & \" --><a/>", "<![CDATA[<a x=\"&]]>", "<?x &"}) {
    EXPECT_EQ(ToConformingXml(text), text);
  }
}

}  // namespace
}  // namespace tarn
