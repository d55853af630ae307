#include "hosts/desktop/Examples.h"

#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Returns the start of the first paragraph up to a colon or the end of the sentence.
std::string SummaryOf(FileSystem& files, const std::string& folder) {
  const auto text = files.ReadWholeFile(JoinPath(folder, "README.md"));
  if (!text) return {};
  for (const std::string_view line : Split(*text, '\n')) {
    if (Trim(line).empty() || line.starts_with("#")) continue;
    return std::string(Trim(line.substr(0, std::min(line.find(':'), line.find(". ")))));
  }
  return {};
}

Status CopyFolder(FileSystem& files, const std::string& from, const std::string& to) {
  if (const Status made = files.CreateFolders(to); !made) return made;
  const auto entries = files.ListFolder(from);
  if (!entries) return entries.GetError();
  for (const FolderEntry& each : *entries) {
    const std::string source = JoinPath(from, each.name);
    const std::string target = JoinPath(to, each.name);
    const Status copied =
        each.isFolder ? CopyFolder(files, source, target) : files.CopyFileTo(source, target);
    if (!copied) return copied;
  }
  return {};
}

}  // namespace

std::vector<Example> FindExamples(FileSystem& files, const std::string& folder) {
  std::vector<Example> found;
  const auto entries = files.ListFolder(folder);
  if (!entries) return found;
  for (const FolderEntry& each : *entries) {
    const std::string place = JoinPath(folder, each.name);
    const std::string project = JoinPath(place, each.name + ".tprj");
    if (each.isFolder && files.Exists(project)) {
      found.push_back({each.name, project, SummaryOf(files, place)});
    }
  }
  return found;
}

Result<std::string> CopyExample(FileSystem& files, const Example& example,
                                const std::string& intoFolder) {
  std::string folder = JoinPath(intoFolder, example.name);
  for (int number = 2;; ++number) {
    const Result<bool> exists = files.CheckExists(folder);
    if (!exists) return exists.GetError();
    if (!*exists) break;
    folder = JoinPath(intoFolder, example.name + "-" + std::to_string(number));
  }
  const Status copied = CopyFolder(files, FolderOf(example.projectFile), folder);
  if (!copied) return copied.GetError();
  return JoinPath(folder, FileNameOf(example.projectFile));
}

}  // namespace tarn::host
