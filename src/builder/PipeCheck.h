#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

// Finds pipes and devices that a source would include: a compiler would wait for a program that
// writes to them, possibly forever. Needed for sources whose headers no run has reported yet.
//
// Follows the include directives depth first, in the folder of the including file and in the given
// ones, and examines each file once per lifetime of the object. Names from macros are not found.
class PipeCheck {
 public:
  explicit PipeCheck(FileSystem& fileSystem) : files_(fileSystem) {}

  // Returns the first such file, or an empty string. `folders` are those that the command names;
  // other paths in it are ignored.
  std::string Find(const std::string& source, const std::vector<std::string>& folders);

 private:
  enum class Kind { Missing, Regular, Unusable };

  Kind KindOf(const std::string& path);
  const std::vector<std::string>& IncludesOf(const std::string& path);

  FileSystem& files_;
  std::unordered_map<std::string, Kind> kinds_;
  std::unordered_map<std::string, std::vector<std::string>> includes_;
};

}  // namespace tarn
