#include "hosts/core/ProjectFile.h"

#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::string_view kProjectExtension = ".tprj";

FoundProject FindInFolder(FileSystem& files, const std::string& folder) {
  FoundProject found;
  const auto entries = files.ListFolder(folder);
  if (!entries) {
    found.problem = "The folder " + files.ResolveLinks(folder) +
                    " can't be read: " + entries.GetError().text + ".";
    return found;
  }
  for (const FolderEntry& entry : *entries) {
    if (entry.isFolder || !EqualNoCase(ExtensionOf(entry.name), kProjectExtension)) continue;
    found.choices.push_back(entry.name);
  }
  if (found.choices.size() == 1) {
    found.path = JoinPath(folder, found.choices.front());
    found.choices.clear();
  } else if (found.choices.empty()) {
    found.problem = "There is no project file (*.tprj) in " + folder + ".";
  } else {
    found.problem = "There are several project files in " + folder + ".";
  }
  return found;
}

FoundProject FindFile(FileSystem& files, const std::string& argument) {
  const std::string here = files.CurrentFolder();
  std::string path = argument.empty() ? here : argument;
  if (IsRelativePath(path)) path = JoinPath(here, path);
  path = files.Canonical(path);
  if (files.IsFolder(path)) return FindInFolder(files, path);
  if (!files.Exists(path)) {
    const auto text = files.ReadWholeFile(path);
    const bool isLink = files.ExamineLink(path).has_value();
    if (text || (text.GetError().code == ErrorCode::NotFound && !isLink)) {
      return {{}, {}, "There is no project file or folder named " + argument + "."};
    }
    return {{}, {}, RealName(files, path) + " can't be read: " + text.GetError().text + "."};
  }
  // The server would treat any other file as a project in the old format and pass it to a script.
  if (!EqualNoCase(ExtensionOf(path), kProjectExtension)) {
    // The check for a folder may have failed because of a system error.
    if (argument.empty()) return FindInFolder(files, path);
    return {{}, {}, argument + " is not a project file (*.tprj)."};
  }
  return {path, {}, {}};
}

}  // namespace

// Links are resolved, so that build records apply no matter by which path the project is opened.
FoundProject FindProject(FileSystem& files, const std::string& argument) {
  FoundProject found = FindFile(files, argument);
  found.path = RealName(files, found.path);
  return found;
}

std::string StatePathOf(const std::string& projectPath) {
  return WithExtension(projectPath, ".tstate");
}

std::string UndoPathOf(const std::string& projectPath) {
  return WithExtension(projectPath, ".undo.tstate");
}

std::string SizesPathOf(const std::string& projectPath) {
  return WithExtension(projectPath, ".sizes.tstate");
}

std::string LogPathOf(const std::string& projectPath) {
  return WithExtension(projectPath, ".tlog");
}

}  // namespace tarn::host
