#pragma once

#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// A project as it starts: a project file, an application of the same name, and one source file in
// a group. The files are those that the system itself writes at a save.
struct NewProject {
  std::string folder;            // absolute; made when it is missing
  std::string name;              // of project and application, without extension
  std::string sourceType = "C";  // node type of the source file
};

// Why a name can't be that of a `what` ("project", "configuration"), after which files or folders
// are named; empty when it can.
std::string CheckFileTitle(const std::string& name, const std::string& what);

// Returns whether a project file gives the text back: what looks like a character reference doesn't
// survive.
bool IsStorable(const std::string& text);

// Writes the files and gives their paths, the project file first. Never overwrites: a project or
// application file that is there already is a failure, a source file that is there is used.
Result<std::vector<std::string>> WriteNewProject(FileSystem& files, const NewProject& project);

// Writes the source file that a new project starts with, and its folder.
Status WriteFirstSource(FileSystem& files, const std::string& path);

// The project that stands in for none: `name` .tprj and .tapp, an application without files. A file
// that is there already stays as it is.
Status WriteStandInProject(FileSystem& files, const std::string& folder, const std::string& name);

// The node type that a configuration file gives to files of an extension (without dot), or
// `fallback` where it names none.
std::string FindSourceType(FileSystem& files, const std::string& configurationFile,
                           const std::string& extension, const std::string& fallback);

}  // namespace tarn::host
