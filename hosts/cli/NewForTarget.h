#pragma once

#include <string>

#include "hosts/cli/OpenedProject.h"
#include "hosts/core/ProjectTemplate.h"

namespace tarn::host {

// The values that only `tarn new` has.
struct NewOptions {
  std::string name;  // NAME or FOLDER/NAME
  std::string compiler;
  std::string target;  // microcontroller
  std::string type;    // of the application
  bool git = false;
};

// Creates a project for the microcontroller of --target by filling in the wizard for new
// applications, and adds a first source file if the application has sources. The files are created
// in the folder of `staged`; messages show that of `project`. Returns 0, or an exit code after
// printing the error. Requires a started session.
int MakeProjectForTarget(CommandContext& context, const NewProject& staged,
                         const NewProject& project);

// Stores the options in the current node that the definitions name for a compiler that requires a
// device, as "Section.Name=value", separated by spaces.
void StoreFirstOptions(ProjectManagerDriver& manager);

// Returns why an application of this name can't be built with a toolchain; an empty string if it
// can.
std::string DescribeNameProblem(CommandContext& context, const std::string& toolchain,
                                const std::string& name);

}  // namespace tarn::host
