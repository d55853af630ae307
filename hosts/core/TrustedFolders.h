#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// The folders whose projects the user trusts, each including its subfolders: one path per line in
// the file `trusted` of the user's state folder. Paths are compared with links resolved, so the
// same folder is recognised by a different path.
class TrustedFolders {
 public:
  // `stateFolder` is created if needed.
  TrustedFolders(FileSystem& fileSystem, const std::string& stateFolder);

  // Reads the list. Fails if it exists but can't be read; then nothing is trusted.
  Result<std::vector<std::string>> Read() const;
  // Returns the entry that makes projects in `folder` trusted, which may be a parent folder; an
  // empty string if there is none.
  std::string Find(const std::string& folder) const;
  // Adds a folder; no-op if it is listed. Refuses a path that can't be stored as one line.
  Status Add(const std::string& folder);
  // Removes a folder. Fails with NotFound if the folder itself is not listed.
  Status Remove(const std::string& folder);
  // Path of the list file.
  const std::string& GetPath() const { return path_; }

 private:
  Result<std::unique_ptr<FileLock>> Lock() const;
  Status Write(const std::vector<std::string>& list);

  FileSystem& files_;
  std::string path_;
};

}  // namespace tarn::host
