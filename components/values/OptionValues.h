#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "components/values/Macros.h"
#include "components/values/ValuesText.h"

namespace tarn {

// The option values of one node, as the property manager hands them out as text and as tools and
// host read them: raw values by set, section and property, the node's own set first, then the sets
// of its ancestors from the inside out. All three names compare without regard to case.
//
// A value may hold macros (Macros.h): $(Section.Property) looks in the own set, then outwards;
// $(Set.Section.Property) in that set; $$ is a dollar sign. Macros are resolved when a value is
// read, so a value that a node inherits sees the names of the node that reads it. Values of the
// section General are taken as they stand. $(Config.Name) is the configuration.
//
// A plain value: copied and read from any thread, changed by one at a time.
class OptionValues : private MacroSource, private ValuesSink {
 public:
  OptionValues() = default;
  explicit OptionValues(std::string_view set) { header.ownSet = set; }

  // Reads a values text; what cannot be read is left out. An empty text gives no values.
  static OptionValues FromText(std::string_view text);
  // The text: one line, without "]", "<" in values, line ends and zero bytes, whatever the values
  // hold.
  std::string ToText() const;

  const std::string& GetOwnSet() const { return header.ownSet; }
  const std::string& GetConfig() const { return header.config; }
  void SetConfig(std::string_view name) { header.config = name; }
  // Sets of the ancestors, from the inside out.
  const std::vector<std::string>& GetOuterSets() const { return header.outerSets; }

  // Sets a value of the node itself; an empty `set` means its own set.
  void Put(std::string_view set, std::string_view section, std::string_view property,
           std::string_view value);

  // The raw value, or null. An empty `set` looks in the own set, then outwards.
  const std::string* Find(std::string_view set, std::string_view section,
                          std::string_view property) const;
  // The value with its macros resolved; empty when there is none.
  std::string Get(std::string_view set, std::string_view section, std::string_view property) const;
  // A text with its macros resolved. An unknown macro gives nothing; a macro that leads back to
  // itself gives nothing and, when `error` is given, names the circle there. `missing` is that of
  // ResolveMacros.
  std::string Resolve(std::string_view text, std::string* error = nullptr,
                      std::string* missing = nullptr) const;
  // The same for a text that is split afterwards, see ResolveForSplitting.
  std::string ResolveUnsplit(std::string_view text, std::string* error = nullptr,
                             std::string* missing = nullptr) const;

 private:
  struct Entry {
    std::string set;
    std::string section;
    std::string property;
    bool literal = false;
    std::array<std::optional<std::string>, 3> layers;  // by ValueLayer
  };

  void OnHeader(const ValuesHeader& read) override { header = read; }
  void OnValue(ValueLayer layer, std::string_view set, std::string_view section,
               std::string_view property, std::string value) override;
  FoundValue FindRaw(std::string_view set, std::string_view section,
                     std::string_view property) const override;
  FoundValue FindBelow(std::uint64_t id) const override;

  const Entry* FindEntry(std::string_view set, std::string_view section,
                         std::string_view property) const;
  FoundValue FromLayer(std::size_t entry, std::size_t layer) const;

  ValuesHeader header;
  std::vector<Entry> entries;  // in the order of the text
  std::unordered_map<std::string, std::size_t> index;
};

}  // namespace tarn
