#include "components/tools/MessageFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "components/tools/BuildRecord.h"

namespace tarn::tools {
namespace {

TEST(MessageFile, EveryKindHasItsAttributesAndChildren) {
  EXPECT_EQ(
      MessageFileText({{Severity::Error, "a.c:3: error: bad", "bad", "/w/a.c", "3"},
                       {Severity::Warning, "?W", "W", "", ""},
                       {Severity::Plain, "a.c:3: note: x", "", "/w/a.c", "3"},
                       {Severity::Plain, "done", "", "", ""},
                       {Severity::Heading, "title", "", "", ""}}),
      "<Messages>\n"
      "<message Icon=\"2\" ShowInReport=\"yes\" Contain=\"bad\" Description=\"a.c:3: error: "
      "bad\" File=\"/w/a.c\" Line=\"3\"><type>1</type><header>a.c:3: error: bad</header>"
      "<link>err:///w/a.c:3</link></message>\n"
      "<message Icon=\"1\" ShowInReport=\"yes\" Contain=\"W\" Description=\"?W\" File=\"\" "
      "Line=\"\"><type>2</type><header>?W</header><link>lnk://</link></message>\n"
      "<message Description=\"a.c:3: note: x\" File=\"/w/a.c\" Line=\"3\"><header>a.c:3: note: "
      "x</header><link>err:///w/a.c:3</link></message>\n"
      "<message Icon=\"0\" Description=\"done\" File=\"\" Line=\"\"><header>done</header>"
      "<link>lnk://</link></message>\n"
      "<message Icon=\"5\" Description=\"title\" File=\"\" Line=\"\"><type>5</type>"
      "<header>title</header><link>lnk://</link></message>\n"
      "</Messages>\n");
}

// This includes Tarn's own parser, which treats a backslash as an escape.
TEST(MessageFile, WhatAToolSaysIsXmlForEveryReader) {
  EXPECT_EQ(MessageFileText({{Severity::Warning, "a<b|\"&amp;\" \x01\\", "]]>", "/w/a&b", "3"}}),
            "<Messages>\n<message Icon=\"1\" ShowInReport=\"yes\" Contain=\"]]&gt;\" "
            "Description=\"a&lt;b&#124;&quot;&amp;amp;&quot;  \\ \" File=\"/w/a&b\" Line=\"3\">"
            "<type>2</type><header>a&lt;b&#124;\"&amp;amp;\"  \\ </header>"
            "<link>err:///w/a&b:3</link></message>\n</Messages>\n");
  EXPECT_THAT(MessageFileText({{Severity::Plain, "x", "", "/w/b\\", "3"}}),
              ::testing::HasSubstr("File=\"/w/b\\\\\" Line=\"3\""));
}

TEST(MessageFile, RecordsKeepPathsWithQuotes) {
  EXPECT_EQ(BuildRecordText({"/o/a.o",
                             "flash 1 B",
                             1234,
                             {"/w/\"b\".h", "/w/c.h"},
                             {"/bin/cc", "/bin/size"},
                             {"/w"},
                             0x1234,
                             {},
                             {"/l/x.a"}}),
            "<F Header=\"/o/a.o\" Infos=\"flash 1 B\" Date=\"1234\" Command=\"0000000000001234\" "
            "Programs=\"&quot;/bin/cc&quot;,&quot;/bin/size&quot;\" "
            "Search=\"&quot;/w&quot;,&quot;?/l/x.a&quot;\"><D "
            "Header=\"/w/&quot;b&quot;.h\"/><D Header=\"/w/c.h\"/></F>");
}

}  // namespace
}  // namespace tarn::tools
