#pragma once

#include <string>

namespace tarn::host {

// Returns what a process gets from its parent and its user, as text for comparison: the working
// folder, the user and all environment variables but those that shells change with each command.
std::string DescribeSurroundings();

}  // namespace tarn::host
