#pragma once

#include <string>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Where a host finds what is installed with it, and where the user's own data lies.
struct HostFolders {
  std::string application;  // with a separator at its end
  std::string data;         // without one
  std::string state = {};   // without one; what programs remember for the user

  // The installation root is TARN_ROOT of the environment, else share/tarn beside the program's
  // folder; the folder of a build has links there.
  static HostFolders FromEnvironment(FileSystem& files);

  // The configuration file that the server uses with these folders: one that bears the name of the
  // data folder in front, if there is one.
  std::string ConfigFile(FileSystem& files) const;
};

}  // namespace tarn::host
