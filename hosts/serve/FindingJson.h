#pragma once

#include <nlohmann/json.hpp>

#include "hosts/core/check/Finding.h"

namespace tarn::host {

// Converts a finding to a JSON object; `shorten` abbreviates the paths in its text.
nlohmann::json ToJson(const Finding& finding, const PathShortener& shorten);

}  // namespace tarn::host
