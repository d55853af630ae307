#include "hosts/cli/EditRecord.h"

#include <gtest/gtest.h>

#include "support/MemoryFileSystem.h"

namespace tarn::host {
namespace {

constexpr const char* kProject = "/p/demo.tprj";
constexpr const char* kRecord = "/p/demo.undo.tstate";

ProjectStep Step(const std::string& label, std::size_t size = 1) {
  return {label, {{"/p/sub/a.tapp", std::string(size, 'x'), label}, {"/q/b.tapp", {}, "\n1 2"}}};
}

// Reads the record and returns the labels from the oldest on; "|" separates undo from redo steps.
std::string Show(FileSystem& files, const std::string& project = kProject) {
  EditRecord record(files, project);
  std::string text = "|";
  for (; record.GetUndo() != nullptr; record.MoveBack()) text = record.GetUndo()->label + text;
  EditRecord again(files, project);
  for (; again.GetRedo() != nullptr; again.MoveOn()) text += again.GetRedo()->label;
  return text;
}

TEST(EditRecord, KeepsStepsOverTheEndOfTheProcessAndAMoveOfTheFolder) {
  testing::MemoryFileSystem files;
  files.AddFolder("/p");
  files.AddFolder("/new");
  EXPECT_EQ(Show(files), "|");
  for (const char* label : {"a", "b", "c"}) {
    EditRecord record(files, kProject);
    record.Add(Step(label));
    ASSERT_TRUE(record.Write());
  }
  EXPECT_EQ(Show(files), "abc|");
  EditRecord record(files, kProject);
  record.MoveBack();
  record.MoveBack();
  ASSERT_TRUE(record.Write());
  EXPECT_EQ(Show(files), "a|bc");
  files.AddFile("/new/other.undo.tstate", *files.BytesOf(kRecord));
  const EditRecord moved(files, "/new/other.tprj");
  const FileChanges& changes = moved.GetUndo()->changes;
  ASSERT_EQ(changes.size(), 2U);
  EXPECT_EQ(changes[0].path + *changes[0].before + *changes[0].after, "/new/sub/a.tappxa");
  EXPECT_EQ(changes[1].path + *changes[1].after, "/q/b.tapp\n1 2");
  EXPECT_FALSE(changes[1].before);
  record.Add(Step("d"));
  ASSERT_TRUE(record.Write());
  EXPECT_EQ(Show(files), "ad|");
}

TEST(EditRecord, OnlyTheLastStepsAreKeptIfThereAreManyOrTheyAreLarge) {
  testing::MemoryFileSystem files;
  files.AddFolder("/p");
  EditRecord record(files, kProject);
  for (char label = 'a'; label <= 'z'; ++label) record.Add(Step(std::string(1, label)));
  ASSERT_TRUE(record.Write());
  EXPECT_EQ(Show(files), "ghijklmnopqrstuvwxyz|");
  record.MoveBack();
  record.Add(Step("1", 5 << 20));
  ASSERT_TRUE(record.Write());
  EXPECT_EQ(Show(files), "1|");
}

TEST(EditRecord, ADamagedRecordIsEmptyAndSaysWhy) {
  testing::MemoryFileSystem files;
  files.AddFolder("/p");
  const auto problem = [&files] {
    const EditRecord read(files, kProject);
    return read.GetStatus() ? std::string() : read.GetStatus().GetError().text;
  };
  EXPECT_EQ(EditRecord(files, kProject).GetStatus().GetError().code, ErrorCode::NotFound);
  EditRecord record(files, kProject);
  record.Add(Step("a"));
  record.MoveBack();
  ASSERT_TRUE(record.Write());
  const std::string whole = *files.BytesOf(kRecord);
  EXPECT_EQ(Show(files), "|a");
  EXPECT_EQ(problem(), "");
  for (std::size_t at = 0; at < whole.size(); ++at) {
    std::string flipped = whole;
    flipped[at] = static_cast<char>(flipped[at] ^ 1);
    for (const std::string& text : {whole.substr(0, at), flipped}) {
      files.AddFile(kRecord, text);
      EXPECT_EQ(Show(files), "|") << at;
      EXPECT_NE(problem(), "") << at;
    }
  }
  files.AddFile(kRecord, "Tarn undo 1\n0 0\n");
  EXPECT_EQ(problem(), "another version of the program wrote it");
}

}  // namespace
}  // namespace tarn::host
