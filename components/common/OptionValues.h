#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// The option values of one node, as the property manager hands them out as text and as tools and
// host read them: raw values by set, section and property, the node's own set first, then the sets
// of its ancestors from the inside out.
//
// A value may hold macros: $(Section.Property) looks in the own set, then outwards;
// $(Set.Section.Property) in that set; $$ is a dollar sign. Macros are resolved when a value is
// read, so a value that a node inherits sees the names of the node that reads it.
class OptionValues {
 public:
  // Reads a values text; what cannot be read is left out. An empty text gives no values.
  static OptionValues FromText(std::string_view text);
  // The text: one line, without "]", "<" in values, line ends and zero bytes, whatever the values
  // hold.
  std::string ToText() const;

  const std::string& GetOwnSet() const { return ownSet; }

  // The raw value, or null. An empty `set` looks in the own set, then outwards.
  const std::string* Find(std::string_view set, std::string_view section,
                          std::string_view property) const;
  // The value with its macros resolved; empty when there is none.
  std::string Get(std::string_view set, std::string_view section, std::string_view property) const;
  // A text with its macros resolved. An unknown macro gives nothing; a macro that leads back to
  // itself gives nothing and, when `error` is given, names the circle there.
  std::string Resolve(std::string_view text, std::string* error = nullptr) const;
};

}  // namespace tarn
