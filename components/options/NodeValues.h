#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/options/Definitions.h"
#include "components/options/KeyTable.h"
#include "components/options/StoredOptions.h"
#include "components/options/ValueLayers.h"
#include "components/values/Macros.h"
#include "components/values/ValuesText.h"

namespace tarn::options {

// Where the value that counts comes from.
enum class Origin { None, Definition, Inherited, Own };

// The values of the one node that is held, and of the levels above it.
//
// Publishing goes through here once per node, so nothing is done that nobody asks for: a values
// text is only kept until somebody reads from it, own values lie in slots by key that a new node
// overwrites without giving memory back, and what is inherited is shared by all children of one
// parent, ready text included.
class NodeValues : private MacroSource {
 public:
  NodeValues(KeyTable& keyTable, Definitions& definitionTable);

  // Drops all levels. The configuration in force stays.
  void Clear();
  // Adds the values of a values text to what is held; false when it is none.
  bool ReadText(std::string_view text);
  // The values as a values text.
  std::string ToText();

  // The configuration in force; "Standard" until one is set.
  void SetConfig(std::string_view name);
  const std::string& GetConfig() const { return config; }

  // What $(Install.ConfigFolder) gives, with its final separator.
  void SetConfigFolder(std::string folder) { configFolder = std::move(folder); }

  // The set of the level held, unless it has one already.
  void EnterSet(std::string_view name);
  // Its name; empty when none was entered.
  const std::string& OwnSet();
  // Tells the node from the others of the project, by paths and labels on the way to it.
  std::string Place();

  void SetValue(std::string_view set, std::string_view section, std::string_view property,
                std::string_view value);
  // Takes back an own value; what is inherited shows again.
  void RemoveValue(std::string_view set, std::string_view section, std::string_view property);
  // Adds the values of an Options text for a configuration, and those of General, which are stored
  // for "Standard" alone. Options of the ancestors, which come again for each child in the order
  // in which its parent had them, are inherited already.
  void Apply(std::string_view forConfig, std::string_view text);
  // Adds values for a configuration, those only whose names match; an empty name matches all.
  void ApplySome(const StoredOptions& options, std::string_view forConfig, std::string_view set,
                 std::string_view section, std::string_view property);

  // What is held becomes inherited; the next values belong to a child.
  void EndParentLevel();
  void BeginChildLevel();

  // The value with its macros resolved; an empty `set` looks in the own set, then outwards.
  std::string Get(std::string_view set, std::string_view section, std::string_view property,
                  std::string* error = nullptr);
  // What the property would give if its own value were this text.
  std::string Resolve(std::string_view set, std::string_view section, std::string_view property,
                      std::string_view text, std::string* error, std::string* missing = nullptr);
  // The raw own value; false when there is none.
  bool GetOwn(std::string_view set, std::string_view section, std::string_view property,
              std::string& value);
  // The set whose value answers for the property: `set`, or where a search without one ends.
  SetId AnsweringSet(std::string_view set, PropertyId id);
  Origin GetOrigin(std::string_view set, std::string_view section, std::string_view property);
  bool Holds(const Condition& condition);

  // The stored form of one value, or of all values below an empty property, section or set; empty
  // when there is nothing of that name.
  std::string ConfigText(std::string_view forConfig, std::string_view set, std::string_view section,
                         std::string_view property);

 private:
  struct Slot {
    std::uint32_t level = 0;  // the value counts when this is the current level
    bool direct = false;      // set by itself, not out of stored options
    std::string value;
  };

  // Layers of one value from the inside out, for FindBelow.
  enum Layer : std::uint32_t { OwnLayer, InheritedLayer, DefaultLayer };

  FoundValue FindRaw(std::string_view set, std::string_view section,
                     std::string_view property) const override;
  FoundValue FindBelow(std::uint64_t id) const override;
  FoundValue Look(SetId set, PropertyId property, std::uint32_t layer) const;
  const std::string* FindOwn(KeyId key) const;
  const std::string* FindInherited(KeyId key) const;

  void Settle();
  void NewLevel(std::shared_ptr<const Snapshot> inherited);
  void Merge(const ParsedValues& parsed);
  void PutOwn(KeyId key, std::string_view value, bool direct);
  std::shared_ptr<const Snapshot> InheritedOfChildren();
  std::vector<ValueMap::Value> OwnValues() const;
  SetId SetOf(std::string_view name);
  const std::string* ValueFor(std::string_view forConfig, KeyId key);
  std::vector<KeyId> AllKeys();
  bool IsRemovable(const KeyInfo& info) const;

  KeyTable& keys;
  Definitions& definitions;
  std::string config = "Standard";
  bool configIsSet = false;
  std::string configFolder;

  bool hasPending = false;
  std::string pending;  // a values text that nobody has read from yet
  SetId ownSet = 0;
  std::uint32_t level = 1;
  std::vector<Slot> slots;     // by key
  std::vector<KeyId> ownKeys;  // in the order in which they were set
  std::vector<std::uint64_t> applied;
  std::vector<std::shared_ptr<StoredOptions>> appliedOptions;
  std::shared_ptr<const Snapshot> below;  // never null
  std::size_t lastTextSize = 0;

  std::shared_ptr<const Snapshot> nothing;
  TextCache<ParsedValues> valuesCache;
  TextCache<StoredOptions> optionsCache;
};

}  // namespace tarn::options
