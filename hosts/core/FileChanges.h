#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/core/ServerDrivers.h"
#include "platform/Result.h"
#include "platform/files/FileTexts.h"

namespace tarn::host {

// What a change of a project made of one of its files.
struct FileChange {
  std::string path;  // absolute
  // Nullopt if the file was no part of the project. It may be on the disk all the same.
  std::optional<std::string> before;
  std::optional<std::string> after;
};

using FileChanges = std::vector<FileChange>;

// The project's files as a save would write them now; none if no project is open.
std::vector<FileText> ReadProjectFiles(InspectorDriver& inspector);

// The files that differ. Empty lines make no difference.
FileChanges FindChanges(const std::vector<FileText>& before, const std::vector<FileText>& after);
// The change that takes these back.
FileChanges Reverse(FileChanges changes);
std::vector<FileText> TextsBefore(const FileChanges& changes);
std::vector<FileText> TextsAfter(const FileChanges& changes);

// Makes the changes to the open project in memory; a save writes them. What has changed since they
// were recorded stays. If that is not possible the project stays as it is, and the error's text
// says why, one reason a line.
Status ApplyChanges(InspectorDriver& inspector, const FileChanges& changes);

}  // namespace tarn::host
