#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/core/ServerDrivers.h"
#include "platform/Result.h"
#include "platform/files/FileTexts.h"

namespace tarn::host {

// The effect of a project change on one of its files.
struct FileChange {
  std::string path;  // absolute
  // Nullopt if the file was not part of the project, although it may have existed on disk.
  std::optional<std::string> before;
  std::optional<std::string> after;
};

using FileChanges = std::vector<FileChange>;

// Returns the project's files as a save would write them now; empty if no project is open.
std::vector<FileText> ReadProjectFiles(InspectorDriver& inspector);

// Returns the files that differ, ignoring empty lines.
FileChanges FindChanges(const std::vector<FileText>& before, const std::vector<FileText>& after);
// Returns the inverse change.
FileChanges Reverse(FileChanges changes);
std::vector<FileText> TextsBefore(const FileChanges& changes);
std::vector<FileText> TextsAfter(const FileChanges& changes);

// Applies the changes to the open project in memory; a save writes them. Later changes by the user
// are preserved (three-way merge). On error the project is unchanged, and the error text lists the
// reasons, one per line.
Status ApplyChanges(InspectorDriver& inspector, const FileChanges& changes);

}  // namespace tarn::host
