#pragma once

#include <string>

#include "hosts/core/import/ImportedProject.h"

namespace tarn::host {

// Returns the options that the installed target descriptions in `folder` store for the target with
// this name or alias, as FitTargetName() compares them. Scripts are not run: only their plain calls
// of SavePropertyValue are read. Empty if there is no such target.
ImportedOptions FindTargetOptions(FileSystem& files, const std::string& folder,
                                  const std::string& name);

// Returns the rest of a sentence about a target that FindTargetOptions() doesn't find, with the
// names of the nearest ones, and what the user can do.
std::string DescribeUnknownTarget(FileSystem& files, const std::string& folder,
                                  const std::string& name);

}  // namespace tarn::host
