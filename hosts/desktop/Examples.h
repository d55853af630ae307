#pragma once

#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// A project that is installed for trying things out.
struct Example {
  std::string name;
  std::string projectFile;
  std::string summary;  // one line in English, from its README; may be empty
};

// Those below a folder, by name.
std::vector<Example> FindExamples(FileSystem& files, const std::string& folder);

// Copies the example's folder into another, under a name that is free there, and gives the path of
// the copied project: what is installed can't be written to.
Result<std::string> CopyExample(FileSystem& files, const Example& example,
                                const std::string& intoFolder);

}  // namespace tarn::host
