#include "output/MessageTable.h"

#include <gtest/gtest.h>

#include <thread>

#include "output/BuildOutput.h"
#include "support/MemoryFileSystem.h"

namespace tarn {
namespace {

// Returns all rows that have a string after CBuildOutput has loaded `messageFile`, and the title of
// the views.
std::string LoadedFrom(const std::string& messageFile) {
  testing::MemoryFileSystem disk;
  disk.AddFile("/config/projectmanager.config", "");
  disk.AddFile("/config/message.xslt", messageFile);
  CBuildOutput hub(disk);
  hub.Initialise("/config/projectmanager.config", 0);
  std::string rows;
  for (int i = -1; i <= kMessageCount; ++i) {
    const std::optional<std::string> text = FindMessageText(i);
    if (text) rows += std::to_string(i) + "=" + *text + ";";
  }
  return rows + hub.GetViewTitle();
}

TEST(MessageTable, TakesTheRowsOfAMessageFileAndNothingElse) {
  const char* const cases[][3] = {
      {"the table's ends, and numbers beside them",
       R"(<a><Messages Tab="Build"><m Id="131072" String="first"/><m Id="0x20026" String="last"/>)"
       R"(<m Id="0x1FFFF" String="x"/><m Id="0x20027" String="y"/></Messages></a>)",
       "0=first;38=last;Build"},
      {"no number, no text, an empty text",
       R"(<a><Messages Tab="T"><m String="x"/><m Id="0x20001"/><m Id="0x20002" String=""/></a>)",
       "1=0;2=;T"},
      {"the later of two texts wins, the last title too",
       R"(<a><Messages Tab="T"><m Id="0x20003" String="a"/><m Id="0x20003" String="b"/>)"
       R"(</Messages><Messages/></a>)",
       "3=b;"},
      {"elements of another name or depth",
       R"(<a><messages><m Id="0x20003" String="a"/></messages><t><Messages Tab="T"/></t></a>)", ""},
      {"a file that ends in the middle",
       R"(<a><Messages Tab="T"><m Id="0x20003" String="a"/><m Id="0x20004")", "3=a;4=0;T"},
  };
  for (const auto& [name, file, rows] : cases) {
    EXPECT_EQ(LoadedFrom(file), rows) << name;
    EXPECT_FALSE(FindMessageText(3)) << "outlived its hub: " << name;
  }
}

TEST(MessageTable, KnowsTheKindOfEachRow) {
  std::string kinds;
  for (int i = 0; i < kMessageCount; ++i) kinds += std::to_string(GetMessageKind(i));
  EXPECT_EQ(kinds, "333333111155555511133311113333333333333");
}

// Also a test for the thread sanitizer.
TEST(MessageTable, GivesWholeTextsWhileAnotherThreadReplacesThem) {
  const std::string texts[] = {std::string(200, 'a'), std::string(300, 'b')};
  std::string torn;
  std::thread reader([&] {
    for (int i = 0; i < 5000; ++i) {
      const std::string seen = GetMessageText(kRowOperationBuild);
      if (!seen.empty() && seen != texts[0] && seen != texts[1]) torn = seen;
    }
  });
  for (std::size_t i = 0; i < 5000; ++i) SetMessageText(kRowOperationBuild, texts[i % 2]);
  reader.join();
  FreeMessageTexts();
  EXPECT_EQ(torn, "");
}

}  // namespace
}  // namespace tarn
