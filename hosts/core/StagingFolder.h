#pragma once

#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// A file to be created in a user's folder.
struct NewFile {
  std::string path;  // absolute
  std::string text;
  bool isShared = false;  // an existing file is left alone
};

// Writes the files in this order and returns the paths of those written. All or nothing: on error
// the files already written are removed again, with the folders created for them. An existing file
// with different content is an error (AlreadyExists) unless it is shared, and nothing is written; a
// file with equal content is left alone. A file that can't be examined is an error as well. Put the
// file that makes the others a project last, so that an interrupted process can be repeated.
Result<std::vector<std::string>> WriteNewFiles(FileSystem& files, const std::vector<NewFile>& list);

// A temporary folder in which a project is assembled before it is copied to its destination.
// Deleted by the destructor; leftovers of killed processes are deleted after one day.
class StagingFolder {
 public:
  // Creates the folder in `parent`, or in the system's temporary folder if that fails.
  StagingFolder(FileSystem& fileSystem, const std::string& parent);
  StagingFolder(const StagingFolder&) = delete;
  StagingFolder& operator=(const StagingFolder&) = delete;
  ~StagingFolder();

  // Result of the creation.
  const Status& GetStatus() const { return status_; }
  const std::string& GetPath() const { return path_; }

  // Returns everything in `folder`, a subfolder of this one, except for locks, as new files of the
  // folder `target`: applications and the project file last, all other files first and shared.
  Result<std::vector<NewFile>> CollectFor(const std::string& folder, const std::string& target);

 private:
  Status MakeIn(const std::string& parent);

  FileSystem& files_;
  std::string path_;
  Status status_;
};

}  // namespace tarn::host
