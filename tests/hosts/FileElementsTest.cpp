#include "hosts/core/check/FileElements.h"

#include <gtest/gtest.h>

namespace tarn::host {
namespace {

// Returns "name=header,path@line(children)".
std::string Describe(const FileElements& elements, std::size_t number = 0) {
  const FileElement& element = elements[number];
  std::string text = element.name;
  if (!element.header.empty()) text += "=" + element.header;
  if (!element.path.empty()) text += "," + element.path;
  if (element.line != 0) text += "@" + std::to_string(element.line);
  if (element.children.empty()) return text;
  text += "(";
  for (const std::size_t child : element.children) {
    text += (text.ends_with('(') ? "" : " ") + Describe(elements, child);
  }
  return text + ")";
}

TEST(FileElements, HaveTheLineThatTheyBeginIn) {
  const struct {
    const char *text, *wanted;
  } rows[] = {
      {"", ""},
      {"no element", ""},
      {"\r\n<A Header=\"a b\" >\n\t<B Path='.\\x.c'/>\r\n<C/></A>\n<D/>",
       "(A=a b@2(B,.\\x.c@3 C@4) D@5)"},
      {"<A Extern=\"e\"><B Extern=\"e\" Path=\"p\"/></A>", "(A,e@1(B,p@1))"},
      {"<!-- <X>\n --><?x <X>\n?><A><![CDATA[\n<X>]]><B/></A>", "(A@3(B@4))"},
      {"<A Header=\"1>2 < 3\"\n Path = \"p\"><B/>", "(A=1>2 < 3,p@1(B@2))"},
      {"<A><B><C></A><D/>", "(A@1(B@1(C@1)) D@1)"},
      {"</A><A Header=\"x", ""},
      {"<A =\"x\" ==><B Header=\"", "(A@1)"},
      {"<A Header='&quot;&amp;' Path='a&quot;b&slash;'/>", "(A=\"&amp;,a\"b|@1)"},
  };
  for (const auto& row : rows) EXPECT_EQ(Describe(FileElements(row.text)), row.wanted) << row.text;
}

// Takes a minute instead of a moment if a search is quadratic in the text read.
TEST(FileElements, TakeTimeThatGrowsWithTheText) {
  std::string nested, joined = "<A ";
  for (int i = 0; i < 200000; ++i) nested += "<a>";
  for (int i = 0; i < 200000; ++i) nested += "</b>";
  for (int i = 0; i < 200000; ++i) joined += "=\"x\"";
  EXPECT_EQ(FileElements(nested)[200000].line, 1);
  EXPECT_EQ(Describe(FileElements(joined + " Header=\"h\"/>")), "(A=h@1)");
}

TEST(FileElements, AreFoundInOrderByNameAndHeader) {
  const FileElements elements("<R><A Header='x'/><A Header='y'/>\n<A Header='&quot;'/><A/></R>");
  const std::size_t root = elements[0].children[0];
  std::size_t after = 0;
  EXPECT_EQ(elements.FindChild(root, "B", "x", after), 0u);
  EXPECT_EQ(after, 0u);
  EXPECT_EQ(elements.FindChild(root, "A", "y", after), elements[root].children[1]);
  EXPECT_EQ(elements.FindChild(root, "A", "\"", after), elements[root].children[2]);
  EXPECT_EQ(elements.FindChild(root, "A", "x", after), 0u);
  EXPECT_EQ(after, 3u);
}

}  // namespace
}  // namespace tarn::host
