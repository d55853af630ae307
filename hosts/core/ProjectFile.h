#pragma once

#include <string>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// Result of resolving a user's project argument.
struct FoundProject {
  // Absolute path in the spelling used on disk, with links to folders resolved; empty unless there
  // is exactly one.
  std::string path;
  std::vector<std::string> choices;  // the project files of a folder that holds several
  std::string problem;               // why there is none, as a message for the user
};

// Resolves `argument` to a project file: a project file, or a folder with exactly one of them; an
// empty argument means the current folder.
FoundProject FindProject(FileSystem& files, const std::string& argument);

// Paths of the files that a host stores next to a project file, named after it.
std::string StatePathOf(const std::string& projectPath);
std::string LogPathOf(const std::string& projectPath);
// Ends with the extension of state files, so that an ignore rule of version control for
// state files matches it too.
std::string UndoPathOf(const std::string& projectPath);
// The same applies to the sizes of earlier builds.
std::string SizesPathOf(const std::string& projectPath);

}  // namespace tarn::host
