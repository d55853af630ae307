#pragma once

#include <string>
#include <vector>

#include "components/tools/CommandBuilder.h"

namespace tarn::tools {

// The places of the libraries that a command names by flags, in the order in which the program
// looks for them: one list for each name, absolute.
std::vector<LibraryPlaces> FindLibraryPlaces(const std::vector<LibraryRule>& rules,
                                             const ToolCommand& command,
                                             FileSystem* disk = nullptr);

// Those of the candidates (absolute) that a run reads: files of the run, dependencies, libraries
// and whatever its arguments name, also behind an equal sign or between commas. The output of the
// run itself isn't among them. The order is that of the candidates.
std::vector<std::string> FindUsedFiles(const ToolPlan& plan, const std::vector<std::string>& files,
                                       const std::vector<std::string>& candidates);

}  // namespace tarn::tools
