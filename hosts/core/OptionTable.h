#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarn::host {

// An option as its definition describes it.
struct OptionDefinition {
  std::string set, section, name;
  std::string sectionLabel;
  std::string type, label, help;
  std::string defaultValue;
  std::string minimum, maximum;  // of a number; empty if unbounded
  std::string file;              // file that defines it
  std::uint32_t command = 0;     // executed after a change of its value
  bool removable = true;
  bool shown = true;
  bool enabled = true;
  std::vector<std::pair<std::string, std::string>> choices;  // value and label

  std::string GetKey() const { return section + "." + name; }
};

// An option key as entered by a user: SECTION.NAME or SET.SECTION.NAME.
struct OptionKey {
  std::string set;  // empty if omitted
  std::string section;
  std::string name;
};

// Returns false if `text` doesn't have this form.
bool ParseOptionKey(const std::string& text, OptionKey& key);

// A kind of node with its own set of options.
struct OptionSet {
  std::string name, label;
};

// A value stored at one level between the application and the node.
struct StoredValue {
  std::string set, kind, label, configuration, value;
  bool counts = false;  // effective in the active configuration
};

// Parses the values of an option of `set` from the inspector's explanation, outermost level first.
std::vector<StoredValue> ReadStoredValues(const std::string& set, const std::string& explanation);

// All defined options, as listed by the options component.
class OptionTable {
 public:
  explicit OptionTable(const std::string& xml);

  // The sets named in the definitions.
  const std::vector<OptionSet>& GetSets() const { return setsDefined_; }
  // Returns the options of a set, including those common to all sets, grouped by section.
  std::vector<OptionDefinition> GetOf(const std::string& set) const;
  // Returns the option from the first of the sets that has it.
  std::optional<OptionDefinition> Find(const OptionKey& key,
                                       const std::vector<std::string>& sets) const;
  // Returns true if the set itself has the option; options common to all sets don't count.
  bool Names(const std::string& set, const std::string& section, const std::string& name) const;
  // Returns candidates for suggestions after a misspelled name: option names of these sets, and
  // full keys.
  std::vector<std::string> GetNames(const std::vector<std::string>& sets) const;

 private:
  std::vector<OptionSet> setsDefined_;
  std::vector<OptionDefinition> options_;
};

}  // namespace tarn::host
