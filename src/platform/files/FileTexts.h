#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/WriteFiles.h"

namespace tarn {

// A file as a whole.
struct FileText {
  std::string path;
  std::string text;
};

// The files for FileSystem::WriteFiles; borrows the texts.
std::vector<FileBytes> AsBytes(std::span<const FileText> texts);

// Puts files into one string: "<bytes> <path>\n" and the bytes, of each. No path has a line feed.
std::string JoinFileTexts(std::span<const FileText> texts);
// Takes such a string apart. Returns nullopt if it is cut off or damaged.
std::optional<std::vector<FileText>> SplitFileTexts(std::string_view all);

}  // namespace tarn
