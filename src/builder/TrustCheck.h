#pragma once

#include <string>

#include "project/ProjectTrust.h"

namespace tarn {

// Returns what a tool run would do that an untrusted project must not, as words that follow "the
// project wants to"; empty if nothing. `access` is the reply of the tool manager's GetAccess for
// the run; an uninformative one counts as the worst case.
std::string FindUntrusted(const ProjectTrust& trust, const std::string& tool,
                          const std::string& access);

}  // namespace tarn
