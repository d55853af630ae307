#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

struct FolderScanOptions {
  std::vector<std::string> exclude;  // patterns of files and folders to leave out
  std::vector<std::string> match;    // patterns of the only files to find; empty: by their type
  // Returns true for files that belong to a project. Used if `match` is empty.
  std::function<bool(const std::string& path)> isWanted;
};

// Returns the paths of the files below a folder, sorted by folder. Leaves out what a file
// .gitignore names, hidden files and folders, links to folders, and folders that are in `skipped`.
// Patterns follow the rules of FitsPathPattern() and are relative to the folder.
Result<std::vector<std::string>> ScanFolder(FileSystem& files, const std::string& folder,
                                            const FolderScanOptions& options,
                                            const std::vector<std::string>& skipped);

}  // namespace tarn::host
