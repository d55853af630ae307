#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "components/options/Definitions.h"

namespace tarn::options {

// Current state of a property, which the options window shows in addition to its definition.
struct PropertyState {
  bool shown = true;
  bool enabled = true;
};
using PropertyStateOf = std::function<PropertyState(
    const std::string& set, const std::string& section, const PropertyDefinition& property)>;

// Returns the definitions as XML for windows and programs that display them: OptionSets, Set,
// Section, Property and Choice as in definition files, plus Shown and Enabled for the current state
// and Command for the number of the command that a change requires. A set includes its inherited
// definitions from "*"; an empty name lists all sets as they were defined.
std::string ListDefinitions(const Definitions& definitions, std::string_view set,
                            const PropertyStateOf& stateOf);

}  // namespace tarn::options
