#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "components/options/KeyTable.h"
#include "components/options/ValueLayers.h"

namespace tarn::options {

// Name of the set whose definitions apply to all sets.
inline constexpr std::string_view kEverySet = "*";

// Types of option values.
enum class ValueType { Text, Number, YesNo, Choice, File, Folder, Paths, List };

// Converts between a type and its keyword in definition files.
std::string_view NameOfType(ValueType type);
bool TypeFromName(std::string_view name, ValueType& type);

// A condition "Section.Property=a,b" or "Set.Section.Property!=a,b": true if the property has one
// of the values, or none of them. An empty condition is always true.
struct Condition {
  std::string set;
  std::string section;
  std::string property;
  std::vector<std::string> values;
  bool negated = false;

  bool IsEmpty() const { return property.empty(); }
  std::string ToText() const;
};

// Returns false if the text is not a valid condition.
bool ParseCondition(std::string_view text, Condition& condition);

struct Choice {
  std::string value;
  std::string label;
};

// A default that applies only under a condition (never a negated one).
struct ConditionalDefault {
  Condition when;
  std::string value;
};

// Definition of an option.
struct PropertyDefinition {
  std::string section;
  std::string name;
  ValueType type = ValueType::Text;
  std::string defaultText;
  std::vector<ConditionalDefault> conditionalDefaults;
  std::string label;
  std::string help;
  std::vector<Choice> choices;
  bool removable = true;      // the user can reset a stored value
  bool keepsOutputs = false;  // a change does not invalidate build outputs
  Condition shown;
  Condition enabled;
  std::string minimum;  // limits of a number; empty if there is none
  std::string maximum;
  std::string origin;  // the file that defined it last

  // Returns the default as a single raw value, in which conditional defaults are encoded as a
  // macro.
  std::string RawDefault() const;
};

struct SectionDefinition {
  std::string name;
  std::string label;
  std::string help;
  std::vector<std::unique_ptr<PropertyDefinition>> properties;
};

struct SetDefinition {
  std::string name;
  std::string label;
  std::string help;
  std::vector<std::unique_ptr<SectionDefinition>> sections;
};

// The content of all definition files: sets with their sections and properties, in order of first
// appearance. The set "*" applies to every set, including those that no file names; a set's own
// definitions take precedence.
//
// Calling sequence: change definitions through Set, Section and Property, then call Index, then
// query. Lookups take constant time.
class Definitions {
 public:
  explicit Definitions(KeyTable& keyTable) : keys_(keyTable) {}

  // Return the element of this name, creating it if it is new.
  SetDefinition& Set(std::string_view name);
  static SectionDefinition& Section(SetDefinition& set, std::string_view name);
  // A new property starts as a copy of the property in "*".
  PropertyDefinition& Property(SectionDefinition& section, std::string_view name);
  // Rebuilds the indexes for queries; must be called after every change.
  void Index();
  void Clear();

  const std::vector<std::unique_ptr<SetDefinition>>& Sets() const { return sets_; }
  // Returns true if no property is defined. Valid after Index.
  bool IsEmpty() const { return definedKeys_.empty(); }

  // Returns the effective definition of a property in a set, or nullptr.
  const PropertyDefinition* Find(SetId set, PropertyId property) const;
  // Returns its default, which may be empty, or nullptr if the property is not defined.
  const std::string* FindDefault(SetId set, PropertyId property) const;
  // Returns all non-empty defaults of the set and of "*", under keys of the set, without those of
  // the section Internal.
  const ValueMap& DefaultsOf(SetId set);
  // Same, serialized as elements of a values text.
  const std::string& SerializedDefaultsOf(SetId set);

 private:
  struct Defaults {
    ValueMap values;
    std::string ready;
  };
  struct Entry {
    const PropertyDefinition* definition = nullptr;
    std::string rawDefault;
  };

  const Entry* FindEntry(SetId set, PropertyId property) const;
  const Defaults& DefaultsFor(SetId set);

  KeyTable& keys_;
  SetId everySet_ = 0;
  std::vector<std::unique_ptr<SetDefinition>> sets_;
  std::vector<Entry> entries_;             // entries[0] is unused
  std::vector<std::uint32_t> entryOfKey_;  // 0 if none
  std::vector<KeyId> definedKeys_;         // in order of definition
  std::unordered_map<SetId, Defaults> defaults_;
};

}  // namespace tarn::options
