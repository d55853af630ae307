#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "components/options/Definitions.h"

namespace tarn::options {

// What the options window wants to know of a property beyond its definition.
struct PropertyState {
  bool shown = true;
  bool enabled = true;
};
using PropertyStateOf = std::function<PropertyState(
    const std::string& set, const std::string& section, const PropertyDefinition& property)>;

// The definitions as XML, for windows and programs that show them: OptionSets, Set, Section,
// Property, Choice as in definition files, with Shown and Enabled telling how it is now and
// Command the number of the command that a change calls for. A set comes with what it has from "*";
// an empty name lists all sets as they were defined.
std::string ListDefinitions(const Definitions& definitions, std::string_view set,
                            const PropertyStateOf& stateOf);

}  // namespace tarn::options
