#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// A file of a project that is opened with changes that were never saved.
struct StagedFile {
  std::string text;                 // with the changes
  std::optional<std::string> base;  // what the file held when they were made; none for a new file
};

// By absolute path.
using StagedFiles = std::map<std::string, StagedFile>;

// Reads two lists of files, each entry of which is the count of its bytes, a space, its path and a
// line feed, then the bytes. What is cut off is left out, as is a base without a text.
StagedFiles ReadStagedFiles(std::string_view texts, std::string_view bases);

}  // namespace tarn
