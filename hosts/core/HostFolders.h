#pragma once

#include <string>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Locations of the installed data and of the user's own data.
struct HostFolders {
  std::string application;    // with a trailing separator
  std::string data;           // without trailing separator
  std::string state = {};     // without trailing separator; state that programs keep per user
  std::string settings = {};  // without trailing separator; the user's settings

  // Folder with the user's own definitions of options, tools and targets.
  std::string Definitions() const;
  // Name of the folder with such definitions in the folder of a project.
  static constexpr const char* kProjectDefinitions = ".tarn";

  // Determines the folders. The installation root is TARN_ROOT from the environment, else
  // share/tarn next to the program's folder; a build folder has links there.
  static HostFolders FromEnvironment(FileSystem& files);

  // Returns the configuration file that the server uses with these folders: one prefixed with the
  // name of the data folder if it exists, else the common one.
  std::string ConfigFile(FileSystem& files) const;
};

}  // namespace tarn::host
