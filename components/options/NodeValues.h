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
#include "components/values/ValuesXml.h"

namespace tarn::options {

// Source of an effective value.
enum class Origin { None, Definition, Inherited, Own };

// The values of the node currently held, and of the levels above it.
//
// Publishing calls this once per node, so work is deferred until it is needed: a values text is
// stored unparsed until the first query; own values are in slots indexed by key, which a new node
// reuses without freeing memory; and inherited values, including their serialized form, are shared
// by all children of a parent.
class NodeValues : private MacroSource {
 public:
  NodeValues(KeyTable& keyTable, Definitions& definitionTable);

  // Removes all levels. Keeps the active configuration.
  void Clear();
  // Adds the values of a values text. Returns false if `text` is not one.
  bool ReadText(std::string_view text);
  // Returns the values as a values text.
  std::string ToText();

  // Sets the active configuration; "Standard" until one is set.
  void SetConfig(std::string_view name);
  // Returns the active configuration.
  const std::string& GetConfig() const { return config_; }

  // Value of $(Install.ConfigFolder), including its trailing separator.
  void SetConfigFolder(std::string folder) { configFolder_ = std::move(folder); }

  // Sets the set of the current level unless it has one already.
  void EnterSet(std::string_view name);
  // Returns the name of that set; empty if none was entered.
  const std::string& OwnSet();
  // Returns a string that identifies the node in the project, built from paths and labels of the
  // node and its ancestors.
  std::string Place();

  // Sets an own value. An empty `set` means the own set.
  void SetValue(std::string_view set, std::string_view section, std::string_view property,
                std::string_view value);
  // Removes an own value, so that the inherited one becomes effective.
  void RemoveValue(std::string_view set, std::string_view section, std::string_view property);
  // Adds the values that an Options text has for a configuration, and those of General, which are
  // only stored for "Standard". Options of the ancestors are repeated for each child, in the order
  // in which its parent had them; they are recognized as already inherited and skipped.
  void Apply(std::string_view forConfig, std::string_view text);
  // Adds the values stored for a configuration whose names match; an empty name matches all.
  void ApplySome(const StoredOptions& options, std::string_view forConfig, std::string_view set,
                 std::string_view section, std::string_view property);

  // Turns all current values into inherited ones; values set afterwards belong to a child.
  void EndParentLevel();
  void BeginChildLevel();

  // Returns the value with its macros expanded. An empty `set` means the own set, then the sets of
  // the ancestors from the innermost outwards.
  std::string Get(std::string_view set, std::string_view section, std::string_view property,
                  std::string* error = nullptr);
  // Returns the value that the property would have if its own value were `text`.
  std::string Resolve(std::string_view set, std::string_view section, std::string_view property,
                      std::string_view text, std::string* error, std::string* missing = nullptr);
  // Gets the raw own value. Returns false if there is none.
  bool GetOwn(std::string_view set, std::string_view section, std::string_view property,
              std::string& value);
  // Returns the set whose value is effective for the property: `set`, or the set where a search
  // without one ends.
  SetId AnsweringSet(std::string_view set, PropertyId id);
  // Returns where the effective value of the property comes from.
  Origin GetOrigin(std::string_view set, std::string_view section, std::string_view property);
  // Returns true if the condition is met by the current values.
  bool Holds(const Condition& condition);

  // Returns the stored form of one value, or of all values below an empty property, section or set;
  // empty if no value matches.
  std::string ConfigText(std::string_view forConfig, std::string_view set, std::string_view section,
                         std::string_view property);

 private:
  struct Slot {
    std::uint32_t level = 0;  // the value is valid if this is the current level
    bool direct = false;      // set individually rather than from stored options
    std::string value;
  };

  // Layers of a value, innermost first, for FindBelow.
  enum Layer : std::uint32_t { OwnLayer, InheritedLayer, DefaultLayer };

  FoundValue FindRaw(std::string_view set, std::string_view section,
                     std::string_view property) const override;
  FoundValue FindBelow(std::uint64_t id) const override;
  FoundValue FindStored(SetId set, PropertyId property, std::uint32_t layer) const;
  const std::string* FindOwn(KeyId key) const;
  const std::string* FindInherited(KeyId key) const;

  // Parses the pending values text, if there is one.
  void Settle();
  std::shared_ptr<ParsedValues> ParsePending();
  // Starts a level without own values. Keeps the memory of the slots.
  void NewLevel(std::shared_ptr<const Snapshot> inherited);
  void Merge(const ParsedValues& parsed);
  void PutOwn(KeyId key, std::string_view value, bool direct);
  std::shared_ptr<const Snapshot> InheritedOfChildren();
  std::vector<ValueMap::Value> OwnValues() const;
  SetId SetOf(std::string_view name);
  const std::string* ValueFor(std::string_view forConfig, KeyId key);
  std::vector<KeyId> AllKeys();
  bool IsRemovable(const KeyInfo& info) const;

  KeyTable& keys_;
  Definitions& definitions_;
  std::string config_ = "Standard";
  bool configIsSet_ = false;
  std::string configFolder_;

  bool hasPending_ = false;
  std::shared_ptr<ParsedValues> known_;  // the pending values, if their text was parsed before
  std::string pending_;                  // otherwise, a values text that has not been parsed yet
  SetId ownSet_ = 0;
  std::uint32_t level_ = 1;
  std::vector<Slot> slots_;     // by key
  std::vector<KeyId> ownKeys_;  // in the order in which they were set
  std::vector<std::uint64_t> applied_;
  std::vector<std::shared_ptr<StoredOptions>> appliedOptions_;
  std::shared_ptr<const Snapshot> below_;  // never null
  std::size_t lastTextSize_ = 0;

  std::shared_ptr<const Snapshot> nothing_;
  TextCache<ParsedValues> valuesCache_;
  TextCache<StoredOptions> optionsCache_;
};

}  // namespace tarn::options
