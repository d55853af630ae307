#pragma once

#include <string>

#include "platform/paths/Paths.h"

namespace tarn {

// A picture of the installation, by the name of its file.
inline std::string ResourcePath(const std::string& configFolder, const std::string& name) {
  return JoinPath(JoinPath(configFolder, "resources"), name);
}

}  // namespace tarn
