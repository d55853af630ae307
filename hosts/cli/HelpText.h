#pragma once

#include <string>

#include "hosts/cli/CommandEntry.h"

namespace tarn::host {

// Returns the output of `tarn COMMAND --help`, or the program's own help for an entry without
// words. At most 80 columns wide.
std::string MakeHelpText(const CommandEntry& command);

}  // namespace tarn::host
