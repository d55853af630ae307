#pragma once

#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// The target descriptions of an installation, as packages in a registry: below
// "Software\Corvane\Tarn7\Targets" one key for each file (*.xml) of its folder "targets", named
// "Tarn-" and the file's title, with the label of the file's root as NickName and the file's
// absolute path as XmlPath.
class TargetPackages {
 public:
  // `registryFile` is where they are registered; `targetFolder`, without a separator at its end,
  // holds the files. Both absolute.
  TargetPackages(FileSystem& fileSystem, std::string registryFile, std::string targetFolder);

  // Writes a key for each file, and takes away those of files that are gone, in one step or not at
  // all. Keys of other packages stay. Doing it again changes nothing.
  Status Register();
  Status Unregister();
  // The paths of this folder's files that are registered.
  std::vector<std::string> ListRegistered() const;

 private:
  FileSystem& files;
  std::string registry;
  std::string folder;
};

}  // namespace tarn::host
