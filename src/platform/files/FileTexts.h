#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/WriteFiles.h"

namespace tarn {

// Path and content of a file.
struct FileText {
  std::string path;
  std::string text;
};

// Converts to the argument of FileSystem::WriteFiles(). Borrows the strings.
std::vector<FileBytes> AsBytes(std::span<const FileText> texts);

// Serializes files into one string: for each, "<bytes> <path>\n" followed by its bytes. Paths must
// not contain a line feed.
std::string JoinFileTexts(std::span<const FileText> texts);
// Parses the output of JoinFileTexts(). Returns nullopt if it is truncated or damaged.
std::optional<std::vector<FileText>> SplitFileTexts(std::string_view all);

}  // namespace tarn
