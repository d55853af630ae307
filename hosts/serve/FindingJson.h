#pragma once

#include <nlohmann/json.hpp>

#include "hosts/core/check/Finding.h"

namespace tarn::host {

// A finding as an object for programs; its text has paths as `shorten` makes them.
nlohmann::json ToJson(const Finding& finding, const PathShortener& shorten);

}  // namespace tarn::host
