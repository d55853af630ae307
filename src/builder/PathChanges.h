#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

// Determines if a path may have led to a different file before a tool run than after it, because a
// folder or symbolic link on the path was replaced during the run. Considers only folders within
// the given roots, because folders above them, such as the one for temporary files, change all the
// time.
//
// Checks each folder once. Create one instance per run.
class PathChanges {
 public:
  // Returns true if a change with this timestamp may have happened during the run.
  using IsDuringRun = std::function<bool(std::int64_t changed)>;

  // The run itself adds entries to the folder of `output` and those above it, so changes of their
  // content are ignored.
  PathChanges(FileSystem& disk, std::vector<std::string> roots, std::string output,
              IsDuringRun isDuringRun)
      : files_(disk),
        roots_(std::move(roots)),
        output_(std::move(output)),
        isDuringRun_(std::move(isDuringRun)) {}

  // Returns true if `path` may have led to a different file before the run.
  bool MayHaveChanged(const std::string& path);

 private:
  bool IsFolderChanged(const std::string& folder);
  bool IsReplaced(const std::string& folder);

  FileSystem& files_;
  std::vector<std::string> roots_;
  std::string output_;
  IsDuringRun isDuringRun_;
  std::unordered_map<std::string, bool> folders_;  // results, each including all folders above
};

}  // namespace tarn
