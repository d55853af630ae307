#pragma once

#include <string>
#include <vector>

#include "hosts/cli/OpenedProject.h"
#include "hosts/frame/ProjectTemplate.h"

namespace tarn::host {

// Makes a project for the microcontroller of --target, by filling in the wizard that a user would
// see, and adds a first source file where the application has any. 0 and the files that were made,
// the project's first, or an exit code with everything said. Never overwrites.
int MakeProjectForTarget(CommandContext& context, const NewProject& project,
                         std::vector<std::string>& made);

}  // namespace tarn::host
