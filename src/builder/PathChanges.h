#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

// Tells whether a name may have led to another file before a tool ran than after it: a folder or a
// symbolic link on the way was replaced while it ran. Only within the given roots, since folders
// above them, such as the one for temporary files, change all the time.
//
// Examines each folder once. For the files of one run.
class PathChanges {
 public:
  // By the time of the last change: it may have been during the run.
  using IsDuringRun = std::function<bool(std::int64_t changed)>;

  // The output's folder and those above it gain entries by the run itself, which is no reason.
  PathChanges(FileSystem& disk, std::vector<std::string> roots, std::string output,
              IsDuringRun isDuringRun)
      : files_(disk),
        roots_(std::move(roots)),
        output_(std::move(output)),
        isDuringRun_(std::move(isDuringRun)) {}

  bool MayHaveChanged(const std::string& path);

 private:
  bool IsFolderChanged(const std::string& folder);
  bool IsReplaced(const std::string& folder);

  FileSystem& files_;
  std::vector<std::string> roots_;
  std::string output_;
  IsDuringRun isDuringRun_;
  std::unordered_map<std::string, bool> folders_;  // with all above them
};

}  // namespace tarn
