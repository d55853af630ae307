#pragma once

#include <string>

#include "project/ProjectTrust.h"

namespace tarn {

// Returns what a run of a tool would do that the project must not do without the user's trust, in
// words that follow "the project wants to"; empty if there is nothing. `access` is what the tool
// manager's GetAccess returns of the run; one that doesn't tell counts as the worst.
std::string FindUntrusted(const ProjectTrust& trust, const std::string& tool,
                          const std::string& access);

}  // namespace tarn
