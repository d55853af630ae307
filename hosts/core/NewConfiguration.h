#pragma once

#include <optional>
#include <string>

#include "hosts/core/BuildSession.h"
#include "hosts/core/ProjectTree.h"

namespace tarn::host {

// A configuration to be added to an application.
struct NewConfiguration {
  std::string name;
  // The configuration whose stored options it starts with: nullopt for the one in force, an empty
  // string for none.
  std::optional<std::string> from;
};

// Adds the configuration to the application (to the active one if `application` is nullptr), which
// becomes the active one, and keeps the one in force. Nothing is saved. On failure the text is a
// sentence for the user and nothing was changed; the code is InvalidName for a name that can't be
// used, AlreadyExists, NotFound for an unknown `from` or a project without application, and Io if
// the server refused.
Status AddConfiguration(BuildSession& session, const NewConfiguration& wanted,
                        const ApplicationEntry* application = nullptr);

// The name as the application writes it; empty if it has no such configuration.
std::string FindConfiguration(const ApplicationEntry& application, const std::string& name);

}  // namespace tarn::host
