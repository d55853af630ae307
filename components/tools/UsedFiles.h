#pragma once

#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"

namespace tarn::tools {

// Files that a run reads in addition to its sources: those named by its arguments, and those that
// these files name in turn.
struct ReadFiles {
  std::vector<std::string> found;    // existing files, absolute, without duplicates
  std::vector<std::string> missing;  // files that would be read instead if they existed
};

// Returns the names of the files in which a program searches for a library.
std::vector<std::string> LibraryFileNames(const LibraryRule& rule, const std::string& name);

// Call this after the run. Excludes files that the run writes.
ReadFiles FindReadFiles(const ToolDefinition& tool, const ToolPlan& plan,
                        const std::vector<std::string>& files, FileSystem& disk);

// Returns the candidates (absolute paths) that a run reads, whether they exist or not, in their
// order: files of the run, dependencies, libraries and everything else that its arguments name.
// Excludes the run's own output.
std::vector<std::string> FindUsedFiles(const ToolDefinition& tool, const ToolPlan& plan,
                                       const std::vector<std::string>& files,
                                       const std::vector<std::string>& candidates,
                                       FileSystem& disk);

}  // namespace tarn::tools
