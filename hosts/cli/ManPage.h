#pragma once

#include <string>

#include "hosts/cli/CommandEntry.h"

namespace tarn::host {

// The manual page of the program, section 1, for man(1) to format.
std::string MakeManPage(const CommandEntry& program, const std::string& version);

}  // namespace tarn::host
