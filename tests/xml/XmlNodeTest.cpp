#include "xml/XmlNode.h"

#include <gtest/gtest.h>

#include <thread>

#include "XmlDump.h"

namespace tarn {
namespace {

using test::Dump;
using test::Tree;

TEST(XmlNode, SearchesTakeTheFirstInDocumentOrderAndTellAbsentFromEmpty) {
  const auto root = Tree(
      "<b k=\"1\"><a n=\"1\" n=\"2\" e=\"\"><b n=\"2\"/></a><b n=\"3\" k=\"1\"/>"
      "<c k=\"\"/><b n=\"4\" k=\"1\"/></b>");
  EXPECT_STREQ(root->FindChild("b")->GetAttrValue("n"), "3");
  EXPECT_STREQ(root->FindDescendant("b")->GetAttrValue("n"), "2");
  EXPECT_STREQ(root->FindDescendantByAttr("k", "1")->GetAttrValue("n"), "3");
  EXPECT_EQ(root->FindDescendantByAttr("k", "")->GetName(), "c");
  EXPECT_EQ(root->FindDescendantByAttr("n", ""), nullptr);
  EXPECT_STREQ(root->GetChild(0)->GetAttrValue("n"), "1");
  EXPECT_STREQ(root->GetChild(0)->GetAttrValue("e"), "");
  EXPECT_EQ(root->GetChild(0)->GetAttrValue("k"), nullptr);
  EXPECT_EQ(root->GetAttr("K"), nullptr);
  EXPECT_EQ(root->FindChild("B"), nullptr);
  EXPECT_EQ(root->FindDescendant("bb"), nullptr);
  EXPECT_EQ(root->GetChild(-1), nullptr);
  EXPECT_EQ(root->GetChild(4), nullptr);
  EXPECT_EQ(root->GetChild(3)->GetParent(), root.get());
}

TEST(XmlNode, NullArgumentsAreEmptyOrFindNothing) {
  const char* none = nullptr;
  CXmlNode node;
  node.AddChild(none, none);
  node.AddAttr(none, none);
  node.AddCData(none);
  EXPECT_EQ(Dump(node), "[=]( #CDATA)");
  EXPECT_EQ(node.FindChild(none), nullptr);
  EXPECT_EQ(node.FindDescendant(none), nullptr);
  EXPECT_EQ(node.GetAttr(none), nullptr);
  EXPECT_EQ(node.FindDescendantByAttr("", none), nullptr);
  node.SetAttrValue(none, "v");
  node.SetName(none);
  node.SetValue(none);
  EXPECT_EQ(Dump(node), "[=v]( #CDATA)");
  EXPECT_EQ(node.AppendChild(nullptr), nullptr);
  EXPECT_EQ(node.InsertChildBefore(nullptr, nullptr), nullptr);
  EXPECT_EQ(node.DetachChild(nullptr), nullptr);
  EXPECT_FALSE(node.RemoveChild(nullptr));
  EXPECT_FALSE(node.RemoveAttr(nullptr));
}

TEST(XmlNode, AttributesOfReadAndOfMadeNodes) {
  const auto read = Tree("<r><a x=\"11\" y=\"22\" z=\"33\"/></r>");
  CXmlNode made;
  made.SetName("a");
  for (const char* name : {"x", "y", "z"}) made.AddAttr(name, "11");
  for (CXmlNode* node : {read->GetChild(0), &made}) {
    CXmlAttr* y = node->GetAttr("y");
    CXmlAttr* z = node->GetAttr("z");
    EXPECT_EQ(y->GetParent(), node);
    node->SetAttrValue("w", "4");
    node->SetAttrValue("x", "a longer value");
    node->SetAttrValue("y", "s");
    node->SetAttrValue("z", "");
    node->AddAttr("x", "second");
    EXPECT_EQ(Dump(*node), "a[x=a longer value][y=s][z=][w=4][x=second]");
    EXPECT_EQ(node->GetAttr("y"), y) << "an attribute moved";
    EXPECT_EQ(node->GetAttrAt(2), z);
    EXPECT_EQ(node->GetAttrAt(5), nullptr);
    EXPECT_EQ(node->GetAttrAt(-1), nullptr);
    EXPECT_TRUE(node->RemoveAttr(node->GetAttr("x")));
    EXPECT_TRUE(node->RemoveAttr(node->GetAttr("x")));
    EXPECT_EQ(node->GetAttrAt(2)->GetParent(), node) << "the new last one";
    EXPECT_TRUE(node->RemoveAttr(z));
    EXPECT_EQ(Dump(*node), "a[y=s][w=4]");
    EXPECT_EQ(y->GetValue(), "s") << "removing others touched it";
    EXPECT_TRUE(node->RemoveAttr(node->GetAttr("w")));
    EXPECT_TRUE(node->RemoveAttr(y));
    node->AddAttr("n", "1");
    EXPECT_EQ(Dump(*node), "a[n=1]");
  }
  EXPECT_FALSE(made.RemoveAttr(read->GetChild(0)->GetFirstAttr()));
}

TEST(XmlNode, AValueMayComeFromTheNodeItself) {
  const auto root = Tree("<r><a x=\"0123456789\">text</a></r>");
  CXmlNode* node = root->GetChild(0);
  for (int i = 0; i < 2; ++i) {
    node->SetAttrValue("x", node->GetAttrValue("x") + 3);
    node->SetValue(node->ValueText() + 1);
    node->AddAttr("y", node->ValueText());
    node->SetAttrValue("x", std::string(20, '#') + node->GetAttrValue("x"));
    node->SetName(node->NameView());
  }
  // Two rounds, each of which removes three bytes and then adds twenty.
  EXPECT_STREQ(node->GetAttrValue("x"), (std::string(37, '#') + "3456789").c_str());
  EXPECT_EQ(node->GetValue(), "xt");
  EXPECT_STREQ(node->GetAttrAt(2)->ValueText(), "xt");
}

TEST(XmlNode, ChildrenMoveBetweenParents) {
  CXmlNode root;
  root.SetName("r");
  CXmlNode* b = root.AddChild("b");
  CXmlNode* a = root.InsertChildBefore(CXmlNode::CreateNode("a", "1"), b);
  CXmlNode* c = root.AddCData("x]]");
  EXPECT_EQ(Dump(root), "r(a'1' b #CDATA'x]]')");
  EXPECT_EQ(c->GetType(), XmlCData);
  EXPECT_EQ(root.GetChildren(), (std::vector<CXmlNode*>{a, b, c}));

  auto detached = root.DetachChild(a);
  EXPECT_EQ(detached.get(), a);
  EXPECT_EQ(a->GetParent(), &root) << "stale until it is attached again";
  EXPECT_EQ(root.DetachChild(a), nullptr);
  EXPECT_EQ(b->AppendChild(std::move(detached)), a);
  EXPECT_EQ(a->GetParent(), b);
  EXPECT_FALSE(root.RemoveChild(a)) << "a grandchild";
  EXPECT_EQ(Dump(root), "r(b(a'1') #CDATA'x]]')");

  root.InsertChildBefore(CXmlNode::CreateNode("d"), a);
  EXPECT_EQ(Dump(root), "r(b(a'1') #CDATA'x]]' d)") << "not lost without a place";
  EXPECT_TRUE(root.RemoveChild(b));
  root.AddAttr("x", "1");
  root.SetValue("v");
  EXPECT_EQ(Dump(root), "r[x=1]'v'(#CDATA'x]]' d)");
  root.Clear();
  EXPECT_EQ(Dump(root), "r'v'");
}

TEST(XmlNode, CopiesShareNothing) {
  auto source = Tree("<a x=\"1\" x=\"2\" y=\"\">t<b z=\"3\"><!--c--><d/></b><![CDATA[e]]></a>");
  const std::string expected = "a[x=1][x=2][y=]'t'(b[z=3](#COMMENT'c' d) #CDATA'e')";
  CXmlNode target;
  CXmlNode* copy = target.AddChild("old", "value");
  copy->AddChild("gone");
  copy->AddAttr("gone", "1");
  copy->CopyFrom(*source);
  target.AppendCopy(*source);
  source->GetChild(0)->SetAttrValue("z", "changed");
  source.reset();
  EXPECT_EQ(Dump(target), "(" + expected + " " + expected + ")");
  for (CXmlNode* child : target.GetChildren()) {
    EXPECT_EQ(child->GetParent(), &target);
    EXPECT_EQ(child->GetChild(0)->GetParent(), child);
    EXPECT_EQ(child->GetChild(1)->GetType(), XmlCData);
    EXPECT_EQ(child->GetAttrAt(2)->GetParent(), child);
  }
}

// One row for each kind of access to a value whose end is shared: it must see the whole value, and
// leave that of other nodes alone.
TEST(XmlNode, AValueWithASharedEndReadsLikeAnyOther) {
  const auto end = std::make_shared<const std::string>(std::string(300, 'e') + "]");
  const std::string whole = "start" + *end;
  CXmlNode root;
  root.SetName("r");
  const auto add = [&](const char* start) { return root.AddCData(start, end); };
  CXmlNode* const node = add("start");
  CXmlNode* const empty = add("");
  EXPECT_EQ(node->GetType(), XmlCData);
  EXPECT_EQ(node->GetValue(), whole);
  EXPECT_EQ(test::Flat(root), "<r><![CDATA[" + whole + "]]><![CDATA[" + *end + "]]></r>");
  std::string text = "before ";
  node->AppendValue(text);
  EXPECT_EQ(text, "before " + whole);

  CXmlNode copies;
  CXmlNode* const appended = copies.AppendCopy(*node);
  CXmlNode* const copied = copies.AddChild("c");
  copied->CopyFrom(*node);
  for (CXmlNode* const each : {add("start"), appended, copied}) {
    EXPECT_EQ(each->ValueView(), whole);
    EXPECT_EQ(each->ValueText(), whole);
    EXPECT_EQ(each->GetValue(), whole) << "contiguous now";
  }
  for (const char* const value : {"", "short", "start", "longer than the start was"}) {
    CXmlNode* const changed = add("start");
    changed->SetValue(value);
    EXPECT_EQ(changed->GetValue(), value);
  }
  CXmlNode* const loaded = add("start");
  CXmlNode* const other = root.AddCData(whole);
  for (CXmlNode* const each : {loaded, other}) {
    CXmlParseInfo info;
    each->Load("<a>text</a>", info);
  }
  EXPECT_EQ(Dump(*loaded), Dump(*other));
  EXPECT_EQ(node->GetValue(), whole);
  EXPECT_EQ(empty->ValueView(), *end);
  root.Clear();
  EXPECT_EQ(appended->GetValue(), whole) << "after the other tree is gone";
  copies.Clear();
  EXPECT_EQ(end.use_count(), 1);
}

TEST(XmlNode, ACopyOfItsOwnPartIsNotReadAfterItIsGone) {
  const auto root = Tree("<a><b x=\"1\"><c/></b></a>");
  root->CopyFrom(*root);
  root->AppendCopy(*root);
  EXPECT_EQ(Dump(*root), "a(b[x=1](c) a(b[x=1](c)))");
  root->CopyFrom(*root->GetChild(0));
  EXPECT_EQ(Dump(*root), "b[x=1](c)");
}

// The length is stored only before short strings, and a node with long ones isn't allocated in a
// shared page.
TEST(XmlNode, TextsOfEveryLengthAreReadCopiedAndReplaced) {
  const auto text = [](int length) { return std::string(static_cast<std::size_t>(length), 't'); };
  for (const int length : {1, 251, 252, 253, 254, 255, 256, 257, 8000, 70000}) {
    const std::string a = "<a x=\"" + text(length) + "\" y=\"1\" >" + text(length) + "</a>";
    const auto read = Tree(("<r><b/>" + a + "<b/></r>").c_str());
    CXmlNode copy;
    copy.CopyFrom(*read);
    read->Clear();
    EXPECT_EQ(test::Flat(copy), "<r><b/>" + a + "<b/></r>") << length;
    CXmlNode* node = copy.GetChild(1);
    for (const int next : {length + 1, length - 1, length / 2, 0, length, 300, 2}) {
      node->SetAttrValue("x", text(next));
      node->SetValue(text(next) + "v");
      EXPECT_EQ(test::Flat(*node), "<a x=\"" + text(next) + "\" y=\"1\" >" + text(next) + "v</a>");
    }
  }
}

TEST(XmlNode, ANodeOutlivesTheTreeThatItWasReadWith) {
  std::string text = "<r>";
  for (int i = 0; i < 3000; ++i) text += "<a x=\"" + std::to_string(i) + "\" ><b/></a>";
  auto tree = Tree((text + "</r>").c_str());
  // Neighbours in memory, split into two trees that two threads use.
  auto other = CXmlNode::CreateNode("r");
  for (int i = tree->GetChildCount() - 1; i >= 0; i -= 2) {
    other->AppendChild(tree->DetachChild(tree->GetChild(i)));
  }
  auto last = other->DetachChild(other->GetChild(1499));
  std::thread thread([&] { tree.reset(); });
  EXPECT_STREQ(other->GetChild(0)->GetAttrValue("x"), "2999");
  other.reset();
  thread.join();
  EXPECT_EQ(Dump(*last), "a[x=1](b)");
}

TEST(XmlNode, LongAndManyNamesWorkLikeOthers) {
  CXmlNode root;
  root.SetName(std::string(1000, 'n'));
  for (int i = 0; i < 6000; ++i)
    root.AddChild("name" + std::to_string(i))->AddAttr(std::to_string(i), "v");
  CXmlNode copy;
  copy.CopyFrom(root);
  EXPECT_EQ(test::Flat(copy), test::Flat(root));
  EXPECT_STREQ(copy.FindChild("name5999")->GetAttrValue("5999"), "v");
  root.SetName("short");
  EXPECT_EQ(copy.GetName(), std::string(1000, 'n'));
  EXPECT_EQ(Dump(*CXmlNode::CreateNode(std::string("a\0b", 3), std::string("c\0d", 3))), "a'c'");
}

}  // namespace
}  // namespace tarn
