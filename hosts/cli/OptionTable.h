#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarn::host {

// An option as its definition describes it.
struct OptionDefinition {
  std::string set, section, name;
  std::string type, label, help;
  std::string defaultValue;
  std::string file;  // that defines it
  bool removable = true;
  bool shown = true;
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

// All options that are defined, as the options component lists them.
class OptionTable {
 public:
  explicit OptionTable(const std::string& xml);

  // The options of a set, those that every set has included, section by section.
  std::vector<OptionDefinition> GetOf(const std::string& set) const;
  // The option in the first of the sets that has it.
  std::optional<OptionDefinition> Find(const OptionKey& key,
                                       const std::vector<std::string>& sets) const;
  // What may have been meant by a name that isn't there: names of these sets, and whole names.
  std::vector<std::string> GetNames(const std::vector<std::string>& sets) const;

 private:
  std::vector<OptionDefinition> options;
};

}  // namespace tarn::host
