#pragma once

#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// A file that is about to come to a folder of the user's.
struct NewFile {
  std::string path;  // absolute
  std::string text;
  bool isShared = false;  // one that is there already stays as it is
};

// Writes the files in this order and returns the paths of those that it wrote. All or none: after a
// failure the ones that were written are removed again, with the folders that were made for them.
// One that is there already and holds other bytes is a failure (AlreadyExists) unless it is shared,
// and nothing is written then; one with the same bytes is left alone. So the file that makes the
// others a project comes last, and an interrupted process can be started again.
Result<std::vector<std::string>> WriteNewFiles(FileSystem& files, const std::vector<NewFile>& list);

// A folder in which a project is made until all of it is there. It disappears with the object;
// what killed processes left is removed a day later.
class StagingFolder {
 public:
  // Makes the folder inside of `parent`, or of the folder for temporary files if that fails.
  StagingFolder(FileSystem& fileSystem, const std::string& parent);
  StagingFolder(const StagingFolder&) = delete;
  StagingFolder& operator=(const StagingFolder&) = delete;
  ~StagingFolder();

  // Whether it could be made.
  const Status& GetStatus() const { return status_; }
  const std::string& GetPath() const { return path_; }

  // Everything in `folder`, which is inside of this one, except for locks, as new files of the
  // folder `target`: the project file last, its applications before it, the others shared.
  Result<std::vector<NewFile>> CollectFor(const std::string& folder, const std::string& target);

 private:
  Status MakeIn(const std::string& parent);

  FileSystem& files_;
  std::string path_;
  Status status_;
};

}  // namespace tarn::host
