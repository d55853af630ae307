#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "components/options/KeyTable.h"
#include "components/options/ValueLayers.h"

namespace tarn::options {

// The set that stands for all.
inline constexpr std::string_view kEverySet = "*";

enum class ValueType { Text, Number, YesNo, Choice, File, Folder, Paths, List };

// The word of a type in definition files.
std::string_view NameOfType(ValueType type);
bool TypeFromName(std::string_view name, ValueType& type);

// "Section.Property=a,b" or "Set.Section.Property!=a,b": holds when the property has one of the
// values, or none of them. The empty condition always holds.
struct Condition {
  std::string set;
  std::string section;
  std::string property;
  std::vector<std::string> values;
  bool negated = false;

  bool IsEmpty() const { return property.empty(); }
  std::string ToText() const;
};

// False when the text is no condition.
bool ParseCondition(std::string_view text, Condition& condition);

struct Choice {
  std::string value;
  std::string label;
};

// A default that holds only under a condition (never a negated one).
struct ConditionalDefault {
  Condition when;
  std::string value;
};

struct PropertyDefinition {
  std::string section;
  std::string name;
  ValueType type = ValueType::Text;
  std::string defaultText;
  std::vector<ConditionalDefault> conditionalDefaults;
  std::string label;
  std::string help;
  std::vector<Choice> choices;
  bool removable = true;      // a stored value can be reset
  bool keepsOutputs = false;  // a change does not make what was built stale
  Condition shown;
  Condition enabled;
  std::string minimum;  // of a number; empty: none
  std::string maximum;
  std::string origin;  // the file that defined it last

  // The default as one raw text: conditional defaults become a macro that chooses.
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

// What definition files told: sets with their sections and properties, in the order in which they
// came up. The set "*" stands for every set, also for those that no file names; what a set says
// itself goes first.
class Definitions {
 public:
  explicit Definitions(KeyTable& keyTable) : keys(keyTable) {}

  // The parts by name, made when they are new.
  SetDefinition& Set(std::string_view name);
  static SectionDefinition& Section(SetDefinition& set, std::string_view name);
  // A new property starts from what "*" says of it.
  PropertyDefinition& Property(SectionDefinition& section, std::string_view name);
  // Makes everything answer for what was put in; to be called behind every change.
  void Index();
  void Clear();

  const std::vector<std::unique_ptr<SetDefinition>>& Sets() const { return sets; }
  // True if no property is defined. Holds after Index.
  bool IsEmpty() const { return definedKeys.empty(); }

  // The definition that counts for a property of a set, or null.
  const PropertyDefinition* Find(SetId set, PropertyId property) const;
  // Its default, or null when nothing defines the property. The default may be empty.
  const std::string* FindDefault(SetId set, PropertyId property) const;
  // All defaults that are not empty, of the set and of "*", by keys of the set; without those of
  // the section Internal.
  const ValueMap& DefaultsOf(SetId set);
  // The same as elements of a values text.
  const std::string& ReadyDefaultsOf(SetId set);

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

  KeyTable& keys;
  SetId everySet = 0;
  std::vector<std::unique_ptr<SetDefinition>> sets;
  std::vector<Entry> entries;             // entries[0] is nobody
  std::vector<std::uint32_t> entryOfKey;  // 0: none
  std::vector<KeyId> definedKeys;         // in order
  std::unordered_map<SetId, Defaults> defaults;
};

}  // namespace tarn::options
