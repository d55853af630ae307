#pragma once

#include <optional>
#include <string>

#include "project/ProjectTrust.h"

namespace tarn {

// Returns what a tool run would do that an untrusted project must not; nullopt if nothing. `access`
// is the reply of the tool manager's GetAccess for the run; an uninformative one counts as the
// worst case.
std::optional<TrustRequest> FindUntrusted(const ProjectTrust& trust, const std::string& tool,
                                          const std::string& access);

}  // namespace tarn
