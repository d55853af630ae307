#pragma once

#include <string>
#include <vector>

#include "hosts/core/StagingFolder.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Whether the folder or one above it is under version control by git.
bool IsInGitRepository(FileSystem& files, const std::string& folder);

// `.gitignore`, which names what builds make, and `.gitattributes`, which keeps the line ends of
// project files.
std::vector<NewFile> MakeGitFiles(const std::string& folder);

}  // namespace tarn::host
