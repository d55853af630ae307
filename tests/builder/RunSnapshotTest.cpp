#include "builder/RunSnapshot.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace tarn {
namespace {

namespace fs = std::filesystem;

// A folder on the real disk, whose timestamps are decisive.
struct Folder {
  Folder() {
    char name[] = "/tmp/tarn-snapshot-XXXXXX";
    path = mkdtemp(name);
    for (const char* each : {"real", "real2"}) fs::create_directories(In(each));
    fs::create_directory_symlink("real", In("in"));
  }
  ~Folder() { fs::remove_all(path); }
  std::string In(const std::string& name) const { return path + "/" + name; }
  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(In(name)) << text;
  }
  std::string path;
};

void SetTime(const std::string& path, time_t seconds) {
  const timeval times[2] = {{seconds, 0}, {seconds, 0}};
  ASSERT_EQ(utimes(path.c_str(), times), 0);
}

// Waits until new changes get a later timestamp than the last change of the file. Some kernels use
// a finer resolution for timestamps than their clock reports.
void PassATick(const std::string& path) {
  FileSystem& files = FileSystem::Native();
  const std::int64_t before = std::max(files.Clock(), files.Examine(path)->changed);
  while (files.Clock() <= before) std::this_thread::yield();
}

struct Row {
  const char* name;
  std::function<void(const Folder&)> before, during;
  bool isKnown;     // as an input of the previous run
  bool isDoubtful;  // in the previous run
  bool isSettled;
};

TEST(RunSnapshot, AFileIsSettledOnlyIfTheToolMustHaveReadItAsItIs) {
  const auto nothing = [](const Folder&) {};
  const auto save = [](const Folder& f) { f.Write("in/a.h", "two"); };
  const auto saveSame = [](const Folder& f) { f.Write("in/a.h", "one"); };
  const auto saveOld = [](const Folder& f) {
    f.Write("in/a.h", "two");
    SetTime(f.In("in/a.h"), 1000);
  };
  const auto fromFuture = [](const Folder& f) { SetTime(f.In("in/a.h"), 4000000000); };
  // Replaces a folder and a link with others that contain an older file of the same name.
  const auto swapFolder = [](const Folder& f) {
    fs::rename(f.In("real"), f.In("old"));
    fs::rename(f.In("real2"), f.In("real"));
  };
  const auto swapLink = [](const Folder& f) {
    fs::remove(f.In("in"));
    fs::create_directory_symlink("real2", f.In("in"));
  };
  const auto linkFile = [](const Folder& f) {
    fs::remove(f.In("real/a.h"));
    fs::create_symlink("../real2/a.h", f.In("real/a.h"));
  };
  const auto writeOther = [](const Folder& f) { f.Write("b.o", "other"); };
  const Row rows[] = {
      {"untouched", nothing, nothing, true, false, true},
      {"untouched and found by the tool", nothing, nothing, false, false, true},
      {"from the future", fromFuture, nothing, true, false, true},
      {"from the future, found by the tool", fromFuture, nothing, false, false, true},
      {"saved while compiling", nothing, save, true, false, false},
      {"saved while compiling, found by the tool", nothing, save, false, false, false},
      {"an older file put in place while compiling", nothing, saveOld, true, false, false},
      {"the same with a file that the tool found", nothing, saveOld, false, false, false},
      {"folder exchanged", nothing, swapFolder, true, false, false},
      {"folder exchanged, found by the tool", nothing, swapFolder, false, false, false},
      {"link exchanged, found by the tool", nothing, swapLink, false, false, false},
      {"file replaced by a link, found by the tool", nothing, linkFile, false, false, false},
      {"another output comes into a folder above", nothing, writeOther, false, false, true},
      {"saved with the same content, not read before", nothing, saveSame, true, false, false},
      {"saved with the same content, doubtful before", nothing, saveSame, true, true, true},
      {"saved with other content, doubtful before", nothing, save, true, true, false},
  };
  FileSystem& files = FileSystem::Native();
  for (const Row& row : rows) {
    const Folder folder;
    folder.Write("in/a.h", "one");
    folder.Write("real2/a.h", "two");
    row.before(folder);
    PassATick(folder.In("in/a.h"));
    RunSnapshot snapshot;
    if (row.isKnown) snapshot.AddInput(folder.In("in/a.h"), row.isDoubtful);
    snapshot.TakeBefore(files);
    PassATick(folder.In("in/a.h"));
    row.during(folder);
    folder.Write("a.o", "output");
    snapshot.SetOutput(folder.In("a.o"));
    snapshot.TakeAfter(files);
    PathChanges changes = snapshot.WatchPaths(files, {folder.path});
    const RunSnapshot::Settled settled = snapshot.Settle(files, folder.In("in/a.h"), changes);
    EXPECT_TRUE(settled.exists) << row.name;
    EXPECT_EQ(settled.isSettled, row.isSettled) << row.name;
    EXPECT_TRUE(snapshot.GetOutputStatus().has_value()) << row.name;
    EXPECT_FALSE(snapshot.Settle(files, folder.In("none.h"), changes).exists) << row.name;
  }
}

TEST(RunSnapshot, AFileProducedInTheTickOfTheStartIsSettledByItsContent) {
  FileSystem& files = FileSystem::Native();
  const Folder folder;
  const std::string path = folder.In("in/a.h");
  for (int i = 0; i < 50; ++i) {
    const bool isChanged = i % 5 == 4;
    PassATick(folder.In("in"));
    folder.Write("in/a.h", "one");
    RunSnapshot snapshot;
    snapshot.AddProduced(path, HashFile(files, path));
    snapshot.TakeBefore(files);
    if (isChanged) folder.Write("in/a.h", "two");
    snapshot.TakeAfter(files);
    PathChanges changes = snapshot.WatchPaths(files, {folder.path});
    EXPECT_EQ(snapshot.Settle(files, path, changes).isSettled, !isChanged) << i;
  }
}

}  // namespace
}  // namespace tarn
