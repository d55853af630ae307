#pragma once

#include "hosts/core/import/ImportedProject.h"

namespace tarn::host {

// Adds the installation's start-up files to the programs that need some and have none, as files of
// the project in its folder "startup"; configurations that don't need them exclude them. What can't
// be provided becomes a remark that says what is missing. An existing file of this name is used as
// it is.
Status AddStartUpFiles(ImportedProject& project, const ImportContext& context);

}  // namespace tarn::host
