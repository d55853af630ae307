// Deep, wide and random trees.
#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <random>

#include "XmlDump.h"

namespace tarn {
namespace {

using test::Flat;

// Runs `work` on a thread with a stack of that size; a stack overflow crashes the test program.
void RunOnStack(std::size_t bytes, std::function<void()> work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
  pthread_t thread;
  const auto start = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, start, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

std::string Nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<a>";
  return text;
}

TEST(XmlStress, DepthIsBoundedForReading) {
  CXmlParseInfo info;
  CXmlNode node;
  EXPECT_NE(node.Load(Nested(2000), info), nullptr);
  EXPECT_NE(node.Load(Nested(2000) + "<!--c-->t</a>", info), nullptr);
  EXPECT_EQ(node.Load(Nested(2000) + "<b/>", info), nullptr);
  EXPECT_EQ(node.Load(Nested(1000000), info), nullptr);
  EXPECT_FALSE(info.errorOccurred);
  int depth = 1;
  for (const CXmlNode* at = &node; at->GetChildCount() > 0; at = at->GetChild(0)) ++depth;
  EXPECT_EQ(depth, 2000);
}

// Deeper than the limit for parsed input, since trees are also built by code.
TEST(XmlStress, DepthCostsNoStack) {
  RunOnStack(128 * 1024, [] {
    constexpr int kDepth = 200000;
    auto root = CXmlNode::CreateNode("a");
    CXmlNode* at = root.get();
    for (int i = 1; i < kDepth; ++i) at = at->AddChild("a");
    at->AddAttr("x", "deepest");

    CXmlNode copy;
    copy.CopyFrom(*root);
    root.reset();
    EXPECT_STREQ(copy.FindDescendantByAttr("x", "deepest")->GetAttrValue("x"), "deepest");
    EXPECT_EQ(copy.FindDescendant("b"), nullptr);
    const std::string text = Flat(copy);
    EXPECT_EQ(text.size(), 7 * (kDepth - 1) + std::string("<a x=\"deepest\" />").size());
    copy.Clear();
    EXPECT_EQ(copy.GetChildCount(), 0);
  });
}

// Each of these takes minutes if its cost is quadratic.
TEST(XmlStress, CostGrowsWithTheSizeOnly) {
  constexpr int kCount = 300000;
  std::string attrs = "<a";
  std::string children = "<r>";
  std::string foreign = "<r>";
  std::string texts = "<r>" + std::string(kCount, ' ') + "t";
  for (int i = 0; i < kCount; ++i) {
    attrs += " b";
    children += "<b> </b>\n";
    foreign += "</x>";
    texts += "<b/>t";
  }
  CXmlParseInfo info;
  info.forceParse = true;
  CXmlNode node;
  EXPECT_NE(node.Load(attrs + " />", info), nullptr);
  CXmlNode copy;
  copy.CopyFrom(node);
  EXPECT_EQ(copy.GetAttrCount(), kCount);
  EXPECT_NE(node.Load(foreign, info), nullptr);
  EXPECT_NE(node.Load(texts + "</r>", info), nullptr);
  node.SetValue("");
  EXPECT_NE(node.Load(children, info), nullptr);
  ASSERT_EQ(node.GetChildCount(), kCount);
  while (node.GetChildCount() > 0) {
    ASSERT_TRUE(node.RemoveChild(node.GetChild(node.GetChildCount() - 1)));
  }
}

class RandomTree {
 public:
  explicit RandomTree(unsigned seed) : random_(seed) {}

  std::unique_ptr<CXmlNode> Make(int depth) {
    auto node = CXmlNode::CreateNode(Name(), Below(2) ? Text() : "");
    for (int i = Below(4); i > 0; --i) node->AddAttr(Name(), Text());
    for (int i = depth > 0 ? Below(5) : 0; i > 0; --i) {
      if (Below(6) == 0) {
        node->AddCData(Text());
      } else {
        node->AppendChild(Make(depth - 1));
      }
    }
    return node;
  }

 private:
  int Below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }

  std::string Name() { return std::string(1, "abcXYZ"[Below(6)]) + std::to_string(Below(3)); }

  // Returns any string that the format can represent: no CR LF pair, no "<", no reference in plain
  // text.
  std::string Text() {
    static constexpr char kBytes[] = "ab c\"|'&>\\/=\n\t\xE4\xFF;";
    std::string text = "t";
    for (int i = Below(12); i > 0; --i) text += kBytes[Below(sizeof(kBytes) - 1)];
    return text + (Below(3) ? "t" : "\\");
  }

  std::mt19937 random_;
};

// The result is compared as XML, since saving adds a backslash to a final one.
TEST(XmlStress, RandomTreesSurviveSaveAndLoad) {
  for (unsigned seed = 1; seed <= 500; ++seed) {
    const auto tree = RandomTree(seed).Make(4);
    const std::string saved = Flat(*tree);
    CXmlNode read;
    CXmlParseInfo info;
    ASSERT_NE(read.Load(saved, info), nullptr) << saved;
    CXmlNode copy;
    copy.CopyFrom(read);
    ASSERT_EQ(Flat(copy), saved) << "seed " << seed;
  }
}

}  // namespace
}  // namespace tarn
