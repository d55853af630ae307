#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// The folders whose projects the user trusts, each with all below it: one path a line in the file
// `trusted` of the user's state. What is there by another path, as through a symbolic link, is the
// same folder.
class TrustedFolders {
 public:
  // `stateFolder` is made when it is needed.
  TrustedFolders(FileSystem& fileSystem, const std::string& stateFolder);

  // Fails if there is a list that can't be read; nothing is trusted then.
  Result<std::vector<std::string>> Read() const;
  // The entry that makes projects in `folder` trusted, which may be a folder above; empty if none.
  std::string Find(const std::string& folder) const;
  // Nothing changes for one that is listed. Refuses a path that a line can't hold.
  Status Add(const std::string& folder);
  // Fails with NotFound if the list doesn't have the folder itself.
  Status Remove(const std::string& folder);
  // Where the list is.
  const std::string& GetPath() const { return path_; }

 private:
  Result<std::unique_ptr<FileLock>> Lock() const;
  Status Write(const std::vector<std::string>& list);

  FileSystem& files_;
  std::string path_;
};

}  // namespace tarn::host
