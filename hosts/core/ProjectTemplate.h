#pragma once

#include <string>
#include <vector>

#include "platform/Result.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// A new project: a project file, an application of the same name, and one source file in a group.
// The files are identical to those that the server writes on a save.
struct NewProject {
  std::string folder;            // absolute; created if missing
  std::string name;              // of project and application, without extension
  std::string sourceType = "C";  // node type of the source file
};

// Returns why `name` can't be used for a `what` ("project", "configuration") that files or folders
// are named after; an empty string if it can.
std::string CheckFileTitle(const std::string& name, const std::string& what);

// Returns true if the string survives a round trip through a project file: text that looks like a
// character reference does not.
bool IsStorable(const std::string& text);

// Writes the files and returns their paths, the project file first. Never overwrites: an existing
// project or application file is an error, an existing source file is used.
Result<std::vector<std::string>> WriteNewProject(FileSystem& files, const NewProject& project);

// Writes the first source file of a new project, and creates its folder. It is a copy of the file
// `original`, or a program that does nothing if that is an empty string.
Status WriteFirstSource(FileSystem& files, const std::string& path, const std::string& original);

// Writes the placeholder project that is open when no other is: `name`.tprj and `name`.tapp, an
// application without files. Existing files are left alone.
Status WriteStandInProject(FileSystem& files, const std::string& folder, const std::string& name);

// Returns the node type that a configuration file assigns to files with this extension (without
// dot), or `fallback` if it names none.
std::string FindSourceType(FileSystem& files, const std::string& configurationFile,
                           const std::string& extension, const std::string& fallback);

}  // namespace tarn::host
