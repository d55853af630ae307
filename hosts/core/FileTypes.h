#pragma once

#include <map>
#include <string>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// The node types that the configuration file of an installation assigns to files.
class FileTypes {
 public:
  FileTypes(FileSystem& fileSystem, std::string configurationFile)
      : files_(fileSystem), configuration_(std::move(configurationFile)) {}

  // Returns the type of a file by its extension; "Text" if none claims it.
  const std::string& Of(const std::string& path);

 private:
  FileSystem& files_;
  std::string configuration_;
  std::map<std::string, std::string> types_;  // by extension
};

}  // namespace tarn::host
