#pragma once

#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// An installed example project.
struct Example {
  std::string name;
  std::string projectFile;
  std::string summary;  // one line in English, from its README; may be empty
};

// Returns the examples below a folder, sorted by name.
std::vector<Example> FindExamples(FileSystem& files, const std::string& folder);

// Copies the example's folder into another one under a free name, and returns the path of the
// copied project. Necessary because installed files are read-only.
Result<std::string> CopyExample(FileSystem& files, const Example& example,
                                const std::string& intoFolder);

}  // namespace tarn::host
