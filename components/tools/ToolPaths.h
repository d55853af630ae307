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
// spelling.
std::string SpelledPath(FileSystem* disk, const std::string& path);
// The name of a file that a tool writes: its folder as on the disk, its own name unchanged, so that
// a file of a similar name is left alone.
std::string SpelledOutput(FileSystem* disk, const std::string& path);

}  // namespace tarn::tools
