#pragma once

#include <string>

#include "hosts/cli/CommandEntry.h"

namespace tarn::host {

// What `tarn COMMAND --help` prints; the program's own help for an entry without words. At most 80
// columns wide.
std::string MakeHelpText(const CommandEntry& command);

}  // namespace tarn::host
