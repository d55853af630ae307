#pragma once

#include <string>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// Whether the folder or one above it is under version control by git.
bool IsInGitRepository(FileSystem& files, const std::string& folder);

// Writes `.gitignore`, which names what builds make, and `.gitattributes`, which keeps the line
// ends of project files, where they aren't there yet. Returns the paths of those that it wrote.
Result<std::vector<std::string>> WriteGitFiles(FileSystem& files, const std::string& folder);

}  // namespace tarn::host
