#pragma once

#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Registers the target descriptions of an installation as packages in a registry: below
// "Software\Corvane\Tarn7\Targets" there is one key for each file (*.xml) of the folder "targets".
// The key is "Tarn-" and the file's title, NickName is the label of the file's root, and XmlPath is
// the file's absolute path.
class TargetPackages {
 public:
  // `registryFile` is the registry to write; `targetFolder`, without a trailing separator, contains
  // the files. Both are absolute.
  TargetPackages(FileSystem& fileSystem, std::string registryFile, std::string targetFolder);

  // Writes a key for each file and removes the keys of deleted files, atomically. Keys of other
  // packages are left alone. Idempotent.
  Status Register();
  Status Unregister();
  // Returns the paths of this folder's files that are registered.
  std::vector<std::string> ListRegistered() const;

 private:
  FileSystem& files_;
  std::string registry_;
  std::string folder_;
};

}  // namespace tarn::host
