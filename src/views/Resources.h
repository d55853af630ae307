#pragma once

#include <string>

#include "platform/paths/Paths.h"

namespace tarn {

// Returns the path of an image of the installation.
inline std::string ResourcePath(const std::string& configFolder, const std::string& name) {
  return JoinPath(JoinPath(configFolder, "resources"), name);
}

}  // namespace tarn
