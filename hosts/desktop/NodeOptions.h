#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "components/values/OptionValues.h"
#include "hosts/core/BuildSession.h"
#include "hosts/core/OptionTable.h"

namespace tarn::host {

// How a value is displayed and edited.
enum class OptionKind { Text, Number, YesNo, Choice, File, Folder, Paths, List };

// Origin of a value, as shown to the user.
enum class OptionSource {
  Own,         // set in the node itself
  Inherited,   // set at an outer level
  Reference,   // the default, which refers to another option
  Definition,  // the default
  Nothing,
};

// An option of a node with its value.
struct OptionRow {
  OptionDefinition definition;
  OptionKind kind = OptionKind::Text;
  OptionSource source = OptionSource::Nothing;
  std::string sourceKind;   // level that it is inherited from: "application", "group", ...
  std::string sourceLabel;  // label of that level, or name of the option referred to
  std::string written;      // as stored, with macros
  std::string value;        // with macros expanded
  std::string shown;        // a choice's label, or a path relative to the application

  bool IsOwn() const { return source == OptionSource::Own; }
  bool MayReset() const { return IsOwn() && definition.removable; }
  bool HasMacros() const { return written != value; }
  std::string GetKey() const { return definition.set + "." + definition.GetKey(); }
};

struct OptionSection {
  std::string name, label;
  std::vector<OptionRow> rows;
};

struct ConfigurationList {
  std::string current;  // active one; empty while no project is open
  std::vector<std::string> names;
};

// Everything that the options window shows for a node.
struct OptionSheet {
  std::string node;    // its label
  std::string path;    // its file; empty if it has none
  std::string set;     // set of the displayed options
  std::string ownSet;  // set of the node itself
  // Kinds of inner nodes for which values can be set here; empty for a file.
  std::vector<OptionSet> innerSets;
  std::string folder;  // base folder of relative paths: the application's
  ConfigurationList configurations;
  std::vector<OptionSection> sections;
  std::string undo, redo;  // labels of the options that would change; empty if none
};

// Returns true for the section about the project window, which users rarely change.
bool IsInternalSection(std::string_view name);

// Returns true for the option that contains the kind of the node itself.
bool IsNodeType(const OptionDefinition& option);

// Returns the rows in which every word of `filter` occurs in the label, name, help or section
// label, ignoring case.
std::vector<OptionSection> FilterSections(const std::vector<OptionSection>& sections,
                                          std::string_view filter);

// Convert between a list and a string separated by semicolons. Surrounding spaces and empty entries
// are dropped.
std::vector<std::string> SplitList(std::string_view value);
std::string JoinList(const std::vector<std::string>& entries);

// Reads and changes the options of the server's current node. Must not be used during a build, when
// the server changes the current node from time to time.
//
// Borrows the session. Main thread only.
class NodeOptions {
 public:
  explicit NodeOptions(BuildSession& buildSession) : session_(buildSession) {}

  // Returns the options of `set`, or of the node's own set if that is empty or not available. Empty
  // while no project is open.
  OptionSheet Read(const std::string& set);
  // Returns a string that changes whenever the result of Read would change.
  std::string ReadMark();
  // A counter that changes when a script hides options or the like, for which there is no
  // notification.
  std::int32_t GetSwitchCount() { return session_.Options().GetSwitchCount(); }
  // Returns the values stored for an option at the levels from the application to the node.
  std::vector<StoredValue> Explain(const OptionDefinition& option);

  // Returns the kind of the node, such as "Group"; an empty string if there is no node.
  std::string GetKind();
  // Returns the kinds of nodes that have options.
  std::vector<std::string> ListTypes();

  // Returns why the value is invalid; an empty string if it is valid.
  std::string Check(const OptionDefinition& option, const std::string& value);
  // Each returns false if the server refuses the change at the moment.
  bool Set(const OptionDefinition& option, const std::string& value);
  bool Reset(const OptionDefinition& option);
  bool Undo();
  bool Redo();
  // Removes all values stored at the node, in all configurations. Can't be undone.
  void ResetAll();

  // Returns the configurations of the current node's application.
  ConfigurationList ReadConfigurations();
  void SelectConfiguration(const std::string& name);
  // Adds a configuration with the options of the current one to the active application and selects
  // it. Returns why that is impossible, or an empty string.
  std::string AddConfiguration(const std::string& name);

  // State of the options window, a string that the server stores per node.
  std::string GetViewState() { return session_.Options().GetPropState(); }
  void SetViewState(const std::string& state) { session_.Options().SetPropState(state); }

 private:
  bool HasNode(const OptionValues& values);
  ConfigurationList ReadConfigurations(const OptionValues& values);
  OptionRow ReadRow(const OptionDefinition& definition, const OptionValues& values,
                    const std::string& folder);
  void FindSource(OptionRow& row);
  std::string LabelOf(const std::string& key);
  bool Follow(const std::string& key);
  bool Unheld(const std::function<bool()>& change);

  BuildSession& session_;
};

}  // namespace tarn::host
