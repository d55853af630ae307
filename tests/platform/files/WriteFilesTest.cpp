#include "platform/files/WriteFiles.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/MemoryFileSystem.h"

namespace tarn {
namespace {

TEST(WriteFiles, WhatCanNotBeWrittenWholeIsPutBack) {
  testing::MemoryFileSystem files;
  for (const char* path : {"/p/a", "/p/c", "/p/d"}) files.AddFile(path, "old");
  files.FailOn("write", "/p/c", ErrorCode::NoSpace);
  const std::vector<FileBytes> list = {
      {"/p/a", "new"}, {"/p/b", "new"}, {"/p/d", "old"}, {"/p/c", "new"}};
  EXPECT_EQ(WriteOneByOne(files, list).GetError().place, "/p/c");
  EXPECT_EQ(files.BytesOf("/p/a"), "old");
  EXPECT_FALSE(files.BytesOf("/p/b"));
  files.ClearFailures();
  files.TakeOperations();
  EXPECT_TRUE(WriteOneByOne(files, list));
  EXPECT_EQ(files.Operations("write"),
            (std::vector<std::string>{"write /p/a", "write /p/b", "write /p/c"}));
}

}  // namespace
}  // namespace tarn
