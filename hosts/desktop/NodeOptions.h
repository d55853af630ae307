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

// How a value is shown and edited.
enum class OptionKind { Text, Number, YesNo, Choice, File, Folder, Paths, List };

// What a user is told of where a value comes from.
enum class OptionSource {
  Own,         // set at the node itself
  Inherited,   // set further out
  Reference,   // the default, which says that another option counts
  Definition,  // the default
  Nothing,
};

// An option of the node, with its value.
struct OptionRow {
  OptionDefinition definition;
  OptionKind kind = OptionKind::Text;
  OptionSource source = OptionSource::Nothing;
  std::string sourceKind;   // of the level that it is inherited from: "application", "group", ...
  std::string sourceLabel;  // of that level, or the name of the option that is referred to
  std::string written;      // as it was set, macros and all
  std::string value;        // with macros resolved
  std::string shown;        // the value by its label; a path as it is seen from the application

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
  std::string current;  // the one in force; empty while no project is open
  std::vector<std::string> names;
};

// Everything that the options window shows of a node.
struct OptionSheet {
  std::string node;    // its label
  std::string path;    // of its file; empty where it has none
  std::string set;     // whose options these are
  std::string ownSet;  // of the node itself
  // The kinds of nodes further in that values can be set for here; none for a file.
  std::vector<OptionSet> innerSets;
  std::string folder;  // of the application, from which relative paths count
  ConfigurationList configurations;
  std::vector<OptionSection> sections;
  std::string undo, redo;  // labels of the options that these would change; empty for none
};

// The section that tells of the project window, which hardly anybody changes.
bool IsInternalSection(std::string_view name);

// The option that says of which kind the node itself is.
bool IsNodeType(const OptionDefinition& option);

// The rows in which every word of `filter` is found: in label, name, help or the section's label,
// whatever the case.
std::vector<OptionSection> FilterSections(const std::vector<OptionSection>& sections,
                                          std::string_view filter);

// The texts of a list that are separated by semicolons, blanks around them taken off and empty ones
// left out; and back.
std::vector<std::string> SplitList(std::string_view value);
std::string JoinList(const std::vector<std::string>& entries);

// The options of the node that the server has made current, and their changes. Not while a build
// runs, when the server has another node in hand now and then.
//
// Borrows the session. On the host's thread.
class NodeOptions {
 public:
  explicit NodeOptions(BuildSession& buildSession) : session(buildSession) {}

  // Nothing while no project is open. The options of `set`, of the node's own when it is empty or
  // not one that it has.
  OptionSheet Read(const std::string& set);
  // A text that is another one whenever Read gives another sheet.
  std::string ReadMark();
  // Another number when a script has hidden options or the like, of which nobody is told.
  std::int32_t GetSwitchCount() { return session.Options().GetSwitchCount(); }
  // What was stored for an option on the way from the application to the node.
  std::vector<StoredValue> Explain(const OptionDefinition& option);

  // The kind of the node, such as "Group"; empty without one.
  std::string GetKind();
  // The kinds of nodes that have options.
  std::vector<std::string> ListTypes();

  // Why the value can't be taken; empty when it can.
  std::string Check(const OptionDefinition& option, const std::string& value);
  // Each gives false when the server doesn't take the change now.
  bool Set(const OptionDefinition& option, const std::string& value);
  bool Reset(const OptionDefinition& option);
  bool Undo();
  bool Redo();
  // Takes away what is stored at the node, in all configurations. There is no way back.
  void ResetAll();

  // Of the current node's application.
  ConfigurationList ReadConfigurations();
  void SelectConfiguration(const std::string& name);
  // Adds a configuration with the options of the current one to the active application and selects
  // it. Returns why that can't be done, or an empty string.
  std::string AddConfiguration(const std::string& name);

  // How the window looks, a text that the server keeps for each node.
  std::string GetViewState() { return session.Options().GetPropState(); }
  void SetViewState(const std::string& state) { session.Options().SetPropState(state); }

 private:
  bool HasNode(const OptionValues& values);
  ConfigurationList ReadConfigurations(const OptionValues& values);
  OptionRow ReadRow(const OptionDefinition& definition, const OptionValues& values,
                    const std::string& folder);
  void FindSource(OptionRow& row);
  std::string LabelOf(const std::string& key);
  bool Follow(const std::string& key);
  bool Unheld(const std::function<bool()>& change);

  BuildSession& session;
};

}  // namespace tarn::host
