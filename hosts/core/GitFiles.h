#pragma once

#include <string>
#include <vector>

#include "hosts/core/StagingFolder.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Returns true if the folder or one of its parents is a git work tree. Fails if that cannot be
// determined.
Result<bool> IsInGitRepository(FileSystem& files, const std::string& folder);

// Creates `.gitignore`, which lists build products, and `.gitattributes`, which preserves the line
// endings of project files.
std::vector<NewFile> MakeGitFiles(const std::string& folder);

}  // namespace tarn::host
