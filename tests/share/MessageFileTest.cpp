#include <gtest/gtest.h>

#include <string>

#include "share/ShippedFiles.h"

namespace tarn::shipped {
namespace {

constexpr int kFirstId = 131072;
constexpr int kRows = 39;

// Number of arguments of each text, which is the number passed by the code. A text with more would
// have gaps, and one with fewer would hide what the message is about.
constexpr int kArguments[kRows] = {0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 3, 0, 0, 1, 0, 0, 0, 1, 1, 0,
                                   0, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 1};

int CountArguments(const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at + 2)) {
    EXPECT_EQ(text.substr(at, 2), "%s") << text;
    ++count;
  }
  return count;
}

// A text must also not contain any byte that one of its two readers interprets differently.
TEST(MessageFile, EveryTextIsThereOnceAndTakesTheArgumentsThatTheCodePasses) {
  const auto root = Parse(ReadBytes(Path("config/message.xslt")));
  ASSERT_TRUE(root);
  const CXmlNode* messages = root->FindChild("Messages");
  ASSERT_TRUE(messages);
  EXPECT_EQ(Attribute(*messages, "Tab"), "Build Log");
  int id = kFirstId;
  for (const CXmlNode* message : Elements(*messages)) {
    const std::string text = Attribute(*message, "String");
    ASSERT_LT(id, kFirstId + kRows) << text;
    EXPECT_EQ(Attribute(*message, "Id"), std::to_string(id)) << text;
    EXPECT_FALSE(text.empty()) << id;
    EXPECT_EQ(CountArguments(text), kArguments[id - kFirstId]) << id << ": " << text;
    EXPECT_EQ(text.find_first_of("|\\<>&\"\r\n\t"), std::string::npos) << text;
    ++id;
  }
  EXPECT_EQ(id, kFirstId + kRows);
}

}  // namespace
}  // namespace tarn::shipped
