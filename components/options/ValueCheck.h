#pragma once

#include <string>
#include <string_view>

#include "components/options/Definitions.h"

namespace tarn::options {

// Empty when the value fits the type of the property, else a sentence that says what would fit.
// The value's macros are resolved already. An empty value fits where nothing has to be given: every
// type but a choice that does not list it.
std::string CheckAgainst(const PropertyDefinition& property, std::string_view value);

// The value as a person reads it: the label of a choice, else the value.
std::string DisplayText(const PropertyDefinition& property, std::string_view value);

}  // namespace tarn::options
