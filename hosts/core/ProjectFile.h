#pragma once

#include <string>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// What a user's word for a project leads to.
struct FoundProject {
  // Absolute, as the disk spells it and without links to folders; empty when there is not exactly
  // one.
  std::string path;
  std::vector<std::string> choices;  // the project files of a folder that holds several
  std::string problem;               // why there is none, for a person
};

// Finds the project file that `argument` means: a project file, or a folder with exactly one of
// them; an empty argument is the current folder.
FoundProject FindProject(FileSystem& files, const std::string& argument);

// The files that a host keeps beside a project file, named after it.
std::string StatePathOf(const std::string& projectPath);
std::string LogPathOf(const std::string& projectPath);
// A kind of state, so that version control ignores it where it ignores that.
std::string UndoPathOf(const std::string& projectPath);

}  // namespace tarn::host
