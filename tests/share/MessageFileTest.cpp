#include <gtest/gtest.h>

#include <map>
#include <string>

#include "share/ShippedFiles.h"

namespace tarn::shipped {
namespace {

constexpr int kFirstId = 131072;
constexpr int kRows = 39;

// How many arguments each text takes. The code passes as many; one more would show as nothing, one
// less would hide what the message is about.
constexpr int kArguments[kRows] = {0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 3, 0, 0, 1, 0, 0, 0, 1, 1, 0,
                                   0, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 1};

CXmlNode* FindMessages(const CXmlNode& root) {
  return root.FindChild("Messages");
}

int CountArguments(const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at + 2)) {
    EXPECT_EQ(text.substr(at, 2), "%s") << text;
    ++count;
  }
  return count;
}

TEST(MessageFile, EveryTextIsThereOnceAndTakesTheArgumentsThatTheCodePasses) {
  const auto root = Parse(ReadBytes(Path("config/message.xslt")));
  ASSERT_TRUE(root);
  const CXmlNode* messages = FindMessages(*root);
  ASSERT_TRUE(messages);
  EXPECT_EQ(Attribute(*messages, "Tab"), "Build Log");

  std::map<int, std::string> texts;
  for (const CXmlNode* message : Elements(*messages)) {
    const bool isNew =
        texts.emplace(std::stoi(Attribute(*message, "Id")), Attribute(*message, "String")).second;
    EXPECT_TRUE(isNew) << Attribute(*message, "Id");
  }
  ASSERT_EQ(texts.size(), static_cast<std::size_t>(kRows));
  EXPECT_EQ(texts.begin()->first, kFirstId);
  EXPECT_EQ(texts.rbegin()->first, kFirstId + kRows - 1);
  for (const auto& [id, text] : texts) {
    EXPECT_FALSE(text.empty()) << id;
    EXPECT_EQ(CountArguments(text), kArguments[id - kFirstId]) << id << ": " << text;
  }
}

TEST(MessageFile, ATextWithAByteThatOneOfTheTwoReadersTakesForSomethingElse) {
  const auto root = Parse(ReadBytes(Path("config/message.xslt")));
  ASSERT_TRUE(root);
  for (const CXmlNode* message : Elements(*FindMessages(*root))) {
    const std::string text = Attribute(*message, "String");
    EXPECT_EQ(text.find_first_of("|\\<>&\"\r\n\t"), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace tarn::shipped
