#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/automation/ClassRegistry.h"
#include "platform/automation/DispatchTable.h"

namespace tarn::test {

// What a fake was asked, one line a call: the operation and its arguments with blanks between
// them. An empty text shows as "", a null one as null. May be used from any thread.
class CallRecorder {
 public:
  std::vector<std::string> Calls() const;
  // The calls of one operation.
  std::vector<std::string> CallsOf(std::string_view operation) const;
  std::vector<std::string> TakeCalls();

 protected:
  template <class... Arguments>
  void Record(std::string_view operation, const Arguments&... arguments) {
    std::string line(operation);
    ((line += " " + Show(arguments)), ...);
    const std::lock_guard guard(lock);
    calls.push_back(std::move(line));
  }

 private:
  static std::string Show(std::int32_t number) { return std::to_string(number); }
  static std::string Show(const char* text) {
    if (text == nullptr) return "null";
    return *text == '\0' ? "\"\"" : text;
  }

  mutable std::mutex lock;
  std::vector<std::string> calls;
};

// A property manager for tests: keeps values by set, section and property on levels, and has no
// definitions but the defaults that a test sets. Its texts:
//
//   values   <Values><V S="C" N="General" P="Header" V="main.c" />...</Values>
//   options  <Opt Header="Debug"><Set Header="C"><Sec Header="Build">
//            <Prop Header="Tool" Removable="Yes" Value="cc" /></Sec></Set></Opt>
//
// In both, bytes that a value must not show (quotes, brackets, backslash, control bytes, &) are
// written as &#n;.
class FakePropertyManager : public DispatchObject<FakePropertyManager>, public CallRecorder {
 public:
  static const DispatchTable<FakePropertyManager>& Table();

  // Values where none was set, by "set.section.property"; ".section.property" holds for each set.
  std::map<std::string, std::string> defaults;
  // What the operations of these names answer.
  std::string changedProperty;
  std::string newConfigName;
  std::string propState;  // also what SetPropState leaves
  std::int32_t propertyWindow = 0;
  // As the last calls left them.
  std::string currentConfig;
  std::string projectsConfigs;  // the last such text that was read
  int holds = 0;                // BeginUpdate without EndUpdate
  // Run at the start of each call with the operation's name, if set.
  std::function<void(std::string_view operation)> onCall;

  std::int32_t ReadDefsFromFile(const char* set, const char* file);
  std::int32_t ReadConfigFromFile(const char* config, const char* set, const char* section,
                                  const char* property, const char* file);
  std::int32_t ReadValuesFromText(const char* text);
  std::string GetPropertyValue(const char* set, const char* section, const char* property);
  std::int32_t SetPropertyValue(const char* set, const char* section, const char* property,
                                const char* value);
  std::int32_t HideProperty(const char* set, const char* section, const char* property,
                            std::int32_t hide);
  std::int32_t EnableProperty(const char* set, const char* section, const char* property,
                              std::int32_t enable);
  std::int32_t HideSection(const char* set, const char* section, std::int32_t hide);
  std::int32_t HideSet(const char* set, std::int32_t hide);
  std::string GetConfigText(const char* config, const char* set, const char* section,
                            const char* property);
  std::int32_t ShowOptions(std::int32_t frame);
  std::int32_t GetPropertyWindow();
  void ClearValues();
  std::string GetChangedProperty();
  void BeginUpdate();
  void EndUpdate();
  std::string GetValuesAsText(const char* set, const char* section, const char* property);
  std::int32_t InitOptions(const char* application, const char* data, std::int32_t frame,
                           std::int32_t mode);
  void BeginChildLevel();
  std::string GetNewConfigName();
  void SetCurrentConfig(const char* config);
  std::string GetPropertyStringValue(const char* set, const char* section, const char* property);
  std::string GetPropState();
  void SetPropState(const char* state);
  std::int32_t ApplyOptions(const char* config, const char* xml);
  void ProjectClosing();
  void EndParentLevel();

 private:
  struct Value {
    std::string set;
    std::string section;
    std::string property;
    std::string text;
  };
  using Level = std::vector<Value>;

  template <class... Arguments>
  void Note(std::string_view operation, const Arguments&... arguments) {
    Record(operation, arguments...);
    if (onCall) onCall(operation);
  }
  const std::string* Find(std::string_view set, std::string_view section,
                          std::string_view property) const;
  std::string ValueOf(std::string_view set, std::string_view section,
                      std::string_view property) const;
  void Store(std::string_view set, std::string_view section, std::string_view property,
             std::string text);

  std::vector<Level> levels = std::vector<Level>(1);  // the innermost last
};

// One run that the fake tool manager was asked for.
struct ToolRun {
  std::string tool;
  std::string files;
  std::string options;
  NullableText messageFile;
};

// A tool manager for tests. RunTool may come from any thread.
class FakeToolManager : public DispatchObject<FakeToolManager>, public CallRecorder {
 public:
  static const DispatchTable<FakeToolManager>& Table();

  // What a run does and answers; without one, a run succeeds and writes nothing. On the calling
  // thread. Set it before a worker starts.
  std::function<std::int32_t(const ToolRun& run)> onRun;
  // What GetToolsForExtension answers, by extension; `tools[""]` where none stands.
  std::map<std::string, std::string> tools;

  std::int32_t RunTool(const char* tool, const char* files, const char* options,
                       const char* messageFile);
  std::int32_t InitTools(const char* applicationPath, const char* dataPath, std::int32_t frame);
  std::string GetToolsForExtension(const char* extension);
};

// One fake of each kind, which every CreateInstance of its class gives.
class FakeComponents {
 public:
  FakeComponents();

  // Registers both under their ProgIDs.
  void RegisterWith(ClassRegistry& classes) const;

  FakePropertyManager& Properties() const;
  FakeToolManager& Tools() const;

 private:
  DispatchPtr properties;
  DispatchPtr tools;
};

}  // namespace tarn::test
