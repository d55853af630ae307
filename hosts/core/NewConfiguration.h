#pragma once

#include <optional>
#include <string>

#include "hosts/core/BuildSession.h"
#include "hosts/core/ProjectTree.h"

namespace tarn::host {

// A configuration to be added to an application.
struct NewConfiguration {
  std::string name;
  // Configuration whose stored options are copied: nullopt for the active one, an empty string for
  // none.
  std::optional<std::string> from;
};

// Adds the configuration to the application (to the active one if `application` is nullptr), which
// becomes the active application. The active configuration doesn't change. Nothing is saved.
//
// On error nothing was changed and the text is a sentence for the user. The code is InvalidName for
// an unusable name, AlreadyExists, NotFound for an unknown `from` or a project without application,
// and Io if the server refused.
Status AddConfiguration(BuildSession& session, const NewConfiguration& wanted,
                        const ApplicationEntry* application = nullptr);

// Returns the name in the application's spelling; an empty string if it has no such configuration.
std::string FindConfiguration(const ApplicationEntry& application, const std::string& name);

}  // namespace tarn::host
