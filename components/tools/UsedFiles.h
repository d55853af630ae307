#pragma once

#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"

namespace tarn::tools {

// Files that a run reads besides its sources, as far as its arguments name them, and what these
// files name in turn.
struct ReadFiles {
  std::vector<std::string> found;    // there now, absolute, each once
  std::vector<std::string> missing;  // would be read instead if they were there
};

// For a run that has ended. What the run writes isn't among the files.
ReadFiles FindReadFiles(const ToolDefinition& tool, const ToolPlan& plan,
                        const std::vector<std::string>& files, FileSystem& disk);

// Returns those of the candidates (absolute) that a run reads, whether they are there or not, in
// the order of the candidates: files of the run, dependencies, libraries and everything else that
// its arguments name. The output of the run itself isn't among them.
std::vector<std::string> FindUsedFiles(const ToolDefinition& tool, const ToolPlan& plan,
                                       const std::vector<std::string>& files,
                                       const std::vector<std::string>& candidates,
                                       FileSystem& disk);

}  // namespace tarn::tools
