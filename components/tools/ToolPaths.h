#pragma once

#include <string>
#include <string_view>

#include "platform/files/FileSystem.h"

// Paths as tools take and report them. A tool opens files by their exact names and follows symbolic
// links, so it gets names as the disk spells them, and a ".." after a link is not resolved by its
// letters. Without a disk (null) only the letters count.
namespace tarn::tools {

// `path` with this machine's separators, absolute against `folder`. An empty path stays empty.
std::string AbsolutePath(FileSystem* disk, const std::string& folder, std::string_view path);
std::string AbsolutePath(const std::string& folder, std::string_view path);

// The name on the disk of a file or folder that a tool reads; a part that is missing keeps its
// spelling. `isExact`: something of exactly this name is there.
std::string SpelledPath(FileSystem* disk, const std::string& path, bool* isExact = nullptr);
// The name of a file that a tool writes. Below `folder`, which the disk spells as `spelled`, it is
// exactly as named, so that files and folders of similar names are left alone; elsewhere its folder
// is spelled as on the disk.
std::string SpelledOutput(FileSystem* disk, const std::string& path, const std::string& folder,
                          const std::string& spelled);

}  // namespace tarn::tools
