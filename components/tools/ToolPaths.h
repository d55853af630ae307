#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/files/FileSystem.h"

// Paths as passed to and reported by tools. A tool opens files by their exact names and follows
// symbolic links, so paths are passed with the spelling used on disk, and ".." after a link is not
// resolved textually. If `disk` is null, paths are only processed textually.
namespace tarn::tools {

// Returns `path` with the platform's separators, made absolute against `folder`. An empty path
// stays empty.
std::string AbsolutePath(FileSystem* disk, const std::string& folder, std::string_view path);
std::string AbsolutePath(const std::string& folder, std::string_view path);

// Returns the name on disk of a file or folder that a tool reads; missing components keep their
// spelling. `isExact` receives true if something with exactly this name exists.
std::string SpelledPath(FileSystem* disk, const std::string& path, bool* isExact = nullptr);
// Same for several files, which are examined together.
std::vector<std::string> SpelledPaths(FileSystem* disk, std::vector<std::string> paths);
// Returns the name of a file that a tool writes. Below `folder`, whose spelling on disk is
// `spelled`, the name is kept exactly, so that files and folders with similar names are not
// affected; elsewhere its folder is spelled as on disk.
std::string SpelledOutput(FileSystem* disk, const std::string& path, const std::string& folder,
                          const std::string& spelled);

}  // namespace tarn::tools
