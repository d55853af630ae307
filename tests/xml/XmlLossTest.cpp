#include <gtest/gtest.h>

#include <algorithm>

#include "XmlDump.h"

namespace tarn {
namespace {

using test::Dump;
using test::Visible;

constexpr const char* kNames[] = {
    "text",     "value", "backslash", "instruction", "cdata", "markup",   "element", "attribute",
    "repeated", "open",  "tag",       "endless",     "close", "too deep", "nothing", "trailing"};

class Listener : public XmlLossListener {
 public:
  explicit Listener(const std::string& text) : start_(text.c_str()) {}
  void OnLoss(XmlLoss loss, const char* position, std::string_view name,
              const CXmlNode* element) override {
    std::string line = std::to_string(position - start_) + " " + kNames[static_cast<int>(loss)];
    if (!name.empty()) line += " " + Visible(name);
    if (element) line += " in " + element->GetName();
    lines += (lines.empty() ? "" : ", ") + line;
  }
  std::string lines;

 private:
  const char* start_;
};

std::string LossesOf(const std::string& text) {
  Listener listener(text);
  CXmlParseInfo info;
  CXmlParseInfo plainInfo;
  CXmlNode node;
  CXmlNode plain;
  const char* const end = node.Load(text.c_str(), info, listener);
  EXPECT_EQ(end, plain.Load(text.c_str(), plainInfo)) << text;
  EXPECT_EQ(Dump(node), Dump(plain)) << text;
  EXPECT_EQ(info.errorText, plainInfo.errorText) << text;
  return listener.lines;
}

struct LossRow {
  const char* text;
  const char* losses;
};

TEST(XmlLoss, NothingIsReportedOfATextThatIsReadWhole) {
  const char* const texts[] = {
      "<a/>",
      "\r\n<a x=\"1\" y='<\\\"|' >\r\n\t<b>t</b>\r\n\t<c/>\r\n\t\t\r\n</a>",
      "<?xml version=\"1.0\"?><!-- c --><a>\n  <!-- <b/> -->\n</a>\n<!-- d --> ",
      "<a >\n<b\tx = 'y'\n></b></a >",
      "<a x=1 ><b></b></a>",
      "<a.b-c:d_1 \xC3\xA4=\"\" ></a.b-c:d_1>",
      "<a ><b ></b>  <c/></a >\r\n",
  };
  for (const char* text : texts) {
    const std::string value = std::string(text).find(">t<") == std::string::npos ? "" : "t";
    EXPECT_EQ(LossesOf(text), value.empty() ? "" : "27 value t in b") << text;
  }
}

TEST(XmlLoss, EachLossIsReportedWithItsPlace) {
  const LossRow rows[] = {
      {"", "0 nothing"},
      {"<a><b></b > </a>", "10 value >  in a"},
      {"junk", "0 text junk, 4 nothing"},
      {"junk <a/> rest", "0 text junk , 10 trailing"},
      {"\xEF\xBB\xBF<a/><!-- c --><b/>", "0 text \xEF\xBB\xBF, 17 trailing"},
      {"<a>x</a>", "3 value x in a"},
      {"<a> x<b/></a>", "4 value x in a"},
      {"<a>x<b/>y</a>", "8 text y in a, 3 value x in a"},
      {"<a>\\<b/></a>", "3 backslash a in a, 3 value \\<b/> in a"},
      {"<a><?p?><b/></a>", "3 instruction in a"},
      {"<?p?><a/>", "0 instruction"},
      {"<a><?xml v?><b/></a>", "3 instruction in a"},
      {"<?x?>j/>", "0 instruction, 5 element"},
      {"<a><![CDATA[v]]></a>", "3 cdata v in a"},
      {"<![CDATA[v]]><a/>", "0 text v"},
      {"<!DOCTYPE a ><a/>", "0 markup !DOCTYPE, 10 attribute a, 17 open !DOCTYPE in !DOCTYPE"},
      {"<a><<b/></a>", "3 element <b in a"},
      {"<a>< x='y'/></a>", "3 element in a"},
      {"<a x />", "3 attribute x"},
      {"<a &x='y' />", "3 attribute &x"},
      {"<a x=y'z' />", "3 attribute x"},
      {"<a x='1' y='2' x='3' x='4' />", "0 repeated x, 0 repeated x"},
      {"<a><b>", "6 open b in b"},
      {"<a><b/>", "7 open a in a"},
      {"<a>x<b/>y", "8 text y in a, 9 open a in a, 3 value x in a"},
      {"<a", "0 tag a"},
      {"<a x", "0 tag a"},
      {"<a x='1\\' y='2'/>", "0 tag a"},
      {"<a/x>", "0 tag a"},
      {"<a></a", "5 tag a in a"},
      {"<a></b>", "5 close b in a"},
      {"<a><!-- c", "3 endless <!-- in a"},
  };
  for (const LossRow& row : rows) EXPECT_EQ(LossesOf(row.text), row.losses) << row.text;
  std::string deep;
  for (std::size_t i = 0; i <= CXmlNode::kMaxReadDepth; ++i) deep += "<a>";
  EXPECT_EQ(LossesOf(deep), "6000 too deep in a");
}

}  // namespace
}  // namespace tarn
