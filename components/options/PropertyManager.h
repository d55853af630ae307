#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "components/options/DefinitionList.h"
#include "components/options/Definitions.h"
#include "components/options/KeyTable.h"
#include "components/options/NodeValues.h"
#include "components/options/OptionDefinitionReader.h"
#include "components/options/PlainOptionsWindow.h"
#include "components/options/UndoList.h"
#include "platform/automation/DispatchTable.h"
#include "platform/files/FileSystem.h"

namespace tarn::options {

inline constexpr const char* kPropertyManagerProgId = "TarnOptionsManager.PropertyManager";

// The options component: definitions, the values of one node at a time, and the state of the
// options window. docs/options-format.md documents its files and methods. Null strings are treated
// as empty; failures are reported as 0 or an empty string. Main thread only.
class PropertyManager : public DispatchObject<PropertyManager> {
 public:
  explicit PropertyManager(FileSystem& fileSystem = FileSystem::Native());

  static const DispatchTable<PropertyManager>& Table();

  // Sets the host's main frame; ignores the other arguments. Always returns 1.
  std::int32_t InitOptions(const char* application, const char* data, std::int32_t frame,
                           std::int32_t mode);
  // Clears all state that belongs to the project.
  void ProjectClosing();

  // --- Definitions ---
  std::int32_t ReadDefsFromFile(const char* set, const char* file);
  std::string ListProperties(const char* set);
  std::string GetDefinitionErrors();
  // Returns why the definitions are unreliable: the first file that is missing or damaged, or the
  // fact that nothing is defined at all. Empty if all files were read.
  std::string GetDefinitionProblem();
  std::string CheckValue(const char* set, const char* section, const char* property,
                         const char* value);

  // --- Values of the node held ---
  std::int32_t ReadConfigFromFile(const char* config, const char* set, const char* section,
                                  const char* property, const char* file);
  std::int32_t ReadValuesFromText(const char* text);
  std::string GetPropertyValue(const char* set, const char* section, const char* property);
  std::string GetPropertyStringValue(const char* set, const char* section, const char* property);
  std::int32_t SetPropertyValue(const char* set, const char* section, const char* property,
                                const char* value);
  std::string GetConfigText(const char* config, const char* set, const char* section,
                            const char* property);
  std::string GetValuesAsText(const char* set, const char* section, const char* property);
  std::string GetOrigin(const char* set, const char* section, const char* property);
  std::int32_t ApplyOptions(const char* config, const char* text);
  void ClearValues();
  void EndParentLevel();
  void BeginChildLevel();
  void SetCurrentConfig(const char* config);
  // Empty if no node is held.
  const std::string& GetOwnSet() { return values_.OwnSet(); }
  std::string ListConfigurations();

  // --- The options window ---
  std::int32_t HideProperty(const char* set, const char* section, const char* property,
                            std::int32_t hide);
  std::int32_t EnableProperty(const char* set, const char* section, const char* property,
                              std::int32_t enable);
  std::int32_t HideSection(const char* set, const char* section, std::int32_t hide);
  std::int32_t HideSet(const char* set, std::int32_t hide);
  std::int32_t GetSwitchCount() { return switchCount_; }
  std::int32_t ShowOptions(std::int32_t frame);
  std::int32_t GetPropertyWindow();
  void BeginUpdate();
  void EndUpdate();
  bool IsHeld() const { return updates_ > 0; }
  std::string GetPropState();
  void SetPropState(const char* state);
  // Reloads the definitions if their files have changed; returns 1 if so. The caller has to
  // republish nodes.
  std::int32_t RefreshDefinitions();
  // Sets folders, one per line, whose *.options files are read after those of ReadDefsFromFile;
  // returns 1 if this changes the definitions. The caller has to republish nodes.
  std::int32_t SetDefinitionFolders(const char* folders);
  std::string GetNewConfigName();
  void SetNewConfigName(const char* name);
  std::string GetChangedProperty();
  std::int32_t SetChangedProperty(const char* set, const char* section, const char* property,
                                  const char* value);
  std::int32_t ResetChangedProperty(const char* set, const char* section, const char* property);
  std::string Undo();
  std::string Redo();
  std::string GetUndoProperty();
  std::string GetRedoProperty();

 private:
  bool ReadAllDefinitions();
  // Returns the definition files in the folders, in order of their names.
  std::vector<std::string> FindFurtherFiles() const;
  void ReadConfigurations(const char* text);
  std::string NodeKey();
  std::int32_t ChangeByUser(const char* set, const char* section, const char* property,
                            std::optional<std::string> value);
  void TakeOver(const ValueChange& change, const std::optional<std::string>& value);
  std::int32_t Switch(std::unordered_map<std::string, bool>& switches, std::string key, bool on);
  PropertyState StateOf(const std::string& set, const std::string& section,
                        const PropertyDefinition& property);
  void RecordError(std::string_view name, std::string_view error);

  FileSystem& files_;
  KeyTable keys_;
  Definitions definitions_;
  NodeValues values_;
  UndoList undo_;

  std::vector<std::string> definitionFiles_;  // files passed to ReadDefsFromFile
  std::string lastDefinitionFile_;
  std::vector<std::string> definitionFolders_;
  std::vector<std::string> furtherFiles_;  // those in them that were read
  std::vector<std::string> filesRead_;     // definitionFiles and the files they include
  std::uint64_t digest_ = 0;               // of their contents
  std::vector<std::string> definitionErrors_;
  std::string lostDefinitions_;
  std::vector<std::string> valueErrors_;  // macro cycles found, each reported once

  std::string configurationsText_;
  std::vector<std::string> configurations_;
  bool configurationsAreCurrent_ = false;

  std::unordered_map<std::string, bool> hidden_;    // by lower-case "set", "set.section", ...
  std::unordered_map<std::string, bool> disabled_;  // by lower-case "set.section.property"
  std::int32_t switchCount_ = 0;                    // changes of `hidden` and `disabled`
  std::int32_t updates_ = 0;
  std::string propState_;
  std::string newConfigName_;
  std::string changedProperty_;
  WindowHandle frame_ = 0;
  std::unique_ptr<PlainOptionsWindow> window_;  // created on request of a host
};

}  // namespace tarn::options
