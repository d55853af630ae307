#pragma once

#include "hosts/cli/OpenedProject.h"
#include "hosts/core/ProjectTemplate.h"

namespace tarn::host {

// Makes a project for the microcontroller of --target, by filling in the wizard that a user would
// see, and adds a first source file where the application has any. It is made in the folder of
// `staged`; messages show that of `project`. 0, or an exit code with everything said. The session
// has been started.
int MakeProjectForTarget(CommandContext& context, const NewProject& staged,
                         const NewProject& project);

}  // namespace tarn::host
