#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "components/values/Macros.h"
#include "components/values/ValuesXml.h"

namespace tarn {

// The option values of one node, as the property manager exports them and tools and hosts read
// them: raw values by set, section and property, first those of the node's own set, then those of
// its ancestors from the innermost outwards. Names are compared ignoring case.
//
// A value may contain macros (Macros.h): $(Section.Property) is looked up in the own set, then
// outwards; $(Set.Section.Property) in that set; $$ is a dollar sign. Macros are expanded when a
// value is read, so an inherited value uses the names of the node that reads it. Values of the
// section General are used verbatim. $(Config.Name) is the configuration.
//
// A value type: may be copied and read from any thread, but changed by only one at a time.
class OptionValues : private MacroSource, private ValuesSink {
 public:
  OptionValues() = default;
  explicit OptionValues(std::string_view set) { header_.ownSet = set; }

  // Parses a values text, skipping malformed parts. An empty text has no values.
  static OptionValues FromText(std::string_view text);
  // Returns the values text: a single line without "]", zero bytes and, in values, "<",
  // regardless of what the values contain.
  std::string ToText() const;

  const std::string& GetOwnSet() const { return header_.ownSet; }
  const std::string& GetConfig() const { return header_.config; }
  void SetConfig(std::string_view name) { header_.config = name; }
  // Sets of the ancestors, innermost first.
  const std::vector<std::string>& GetOuterSets() const { return header_.outerSets; }

  // Sets an own value of the node; an empty `set` means its own set.
  void Put(std::string_view set, std::string_view section, std::string_view property,
           std::string_view value);

  // Returns the raw value, or nullptr. An empty `set` means the own set, then outwards.
  const std::string* Find(std::string_view set, std::string_view section,
                          std::string_view property) const;
  // Returns the value with its macros expanded; empty if there is none.
  std::string Get(std::string_view set, std::string_view section, std::string_view property) const;
  // Expands the macros in a text. An unknown macro expands to nothing, and so does a cyclic one,
  // which is described in `error` if that is not null. For `missing` see ResolveMacros.
  std::string Resolve(std::string_view text, std::string* error = nullptr,
                      std::string* missing = nullptr) const;
  // Same for a text that is split afterwards, see ResolveForSplitting.
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

  void OnHeader(const ValuesHeader& read) override { header_ = read; }
  void OnValue(ValueLayer layer, std::string_view set, std::string_view section,
               std::string_view property, std::string value) override;
  FoundValue FindRaw(std::string_view set, std::string_view section,
                     std::string_view property) const override;
  FoundValue FindBelow(std::uint64_t id) const override;

  const Entry* FindEntry(std::string_view set, std::string_view section,
                         std::string_view property) const;
  FoundValue FromLayer(std::size_t entry, std::size_t layer) const;

  ValuesHeader header_;
  std::vector<Entry> entries_;  // in the order of the text
  std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace tarn
