#pragma once

#include <string>

#include "hosts/cli/CommandEntry.h"

namespace tarn::host {

// Returns the program's manual page, section 1, in the input format of man(1).
std::string MakeManPage(const CommandEntry& program, const std::string& version);

}  // namespace tarn::host
