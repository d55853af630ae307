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
  std::string minimum, maximum;  // of a number; empty for none
  std::string file;              // that defines it
  std::uint32_t command = 0;     // that carries out a change of its value
  bool removable = true;
  bool shown = true;
  bool enabled = true;
  std::vector<std::pair<std::string, std::string>> choices;  // value and label

  std::string GetKey() const { return section + "." + name; }
};

// How a user names an option: SECTION.NAME or SET.SECTION.NAME.
struct OptionKey {
  std::string set;  // empty when it wasn't given
  std::string section;
  std::string name;
};

// False for a text of another form.
bool ParseOptionKey(const std::string& text, OptionKey& key);

// A kind of node that has options of its own.
struct OptionSet {
  std::string name, label;
};

// One stored value on the way from the application to the node.
struct StoredValue {
  std::string set, kind, label, configuration, value;
  bool counts = false;  // for the configuration in force
};

// The values of an option of `set` that the inspector found, the outermost level first.
std::vector<StoredValue> ReadStoredValues(const std::string& set, const std::string& explanation);

// All options that are defined, as the options component lists them.
class OptionTable {
 public:
  explicit OptionTable(const std::string& xml);

  // Those that are named in the definitions.
  const std::vector<OptionSet>& GetSets() const { return setsDefined; }
  // The options of a set, those that every set has included, section by section.
  std::vector<OptionDefinition> GetOf(const std::string& set) const;
  // The option in the first of the sets that has it.
  std::optional<OptionDefinition> Find(const OptionKey& key,
                                       const std::vector<std::string>& sets) const;
  // Whether a set itself, not only every one, has an option.
  bool Names(const std::string& set, const std::string& section, const std::string& name) const;
  // What may have been meant by a name that isn't there: names of these sets, and whole names.
  std::vector<std::string> GetNames(const std::vector<std::string>& sets) const;

 private:
  std::vector<OptionSet> setsDefined;
  std::vector<OptionDefinition> options;
};

}  // namespace tarn::host
