#pragma once

#include <string>
#include <string_view>

#include "components/options/Definitions.h"

namespace tarn::options {

// Returns an empty string if the value is valid for the property's type, else a sentence that says
// what is expected. Macros in the value must be expanded. An empty value is valid except for a
// choice that does not list it.
std::string CheckAgainst(const PropertyDefinition& property, std::string_view value);

// Returns the value as shown to users: the label of a choice, or else the value.
std::string DisplayText(const PropertyDefinition& property, std::string_view value);

}  // namespace tarn::options
