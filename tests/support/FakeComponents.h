#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <span>
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
  // Run with the operation's name once a call was kept and before it is answered, if set.
  std::function<void(std::string_view operation)> onCall;

  std::vector<std::string> Calls() const;
  // The calls of one operation.
  std::vector<std::string> CallsOf(std::string_view operation) const;
  std::vector<std::string> TakeCalls();

 protected:
  void Record(std::string_view operation, std::span<const Variant> arguments);

 private:
  mutable std::mutex lock;
  std::vector<std::string> calls;
};

// An object with a dispatch table that keeps what arrives by number. A call past its interface
// leaves no line.
template <class T>
class RecordingObject : public DispatchObject<T>, public CallRecorder {
 public:
  DispatchResult Invoke(DispatchId id, std::span<const Variant> arguments,
                        Variant& result) override {
    if (const auto* method = T::Table().Find(id)) Record(method->info.name, arguments);
    return DispatchObject<T>::Invoke(id, arguments, result);
  }
};

// A property manager for tests: keeps values by set, section and property on levels, and has no
// definitions but the defaults that a test sets. Its texts:
//
//   values   <Values><V K="C.General.Header" V="main.c" />...</Values>
//   options  <Opt Header="Debug"><Set Header="C"><Sec Header="Build">
//            <Prop Header="Tool" Removable="Yes" Value="cc" /></Sec></Set></Opt>
//
// In both, bytes that a value must not show (quotes, brackets, backslash, control bytes, &) are
// written as &#n;.
class FakePropertyManager : public RecordingObject<FakePropertyManager> {
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
  int holds = 0;  // BeginUpdate without EndUpdate

  // Stands for each operation that does nothing, and succeeds.
  template <class... Arguments>
  std::int32_t Accept(Arguments...) {
    return 1;
  }
  std::int32_t ReadValuesFromText(const char* text);
  std::string GetPropertyValue(const char* set, const char* section, const char* property);
  std::int32_t SetPropertyValue(const char* set, const char* section, const char* property,
                                const char* value);
  std::string GetConfigText(const char* config, const char* set, const char* section,
                            const char* property);
  std::int32_t GetPropertyWindow() { return propertyWindow; }
  void ClearValues() { levels.assign(1, {}); }
  std::string GetChangedProperty() { return changedProperty; }
  void BeginUpdate() { ++holds; }
  void EndUpdate() { holds -= holds > 0 ? 1 : 0; }
  std::string GetValuesAsText(const char* set, const char* section, const char* property);
  void BeginChildLevel() { levels.emplace_back(); }
  std::string GetNewConfigName() { return newConfigName; }
  void SetCurrentConfig(const char* config) { currentConfig = TextOf(config); }
  std::string GetPropState() { return propState; }
  void SetPropState(const char* state) { propState = TextOf(state); }
  std::int32_t ApplyOptions(const char* config, const char* xml);
  void ProjectClosing();

 private:
  using Level = std::vector<std::pair<std::string, std::string>>;  // key and text, as they came

  void Store(const std::string& key, std::string text);

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
class FakeToolManager : public RecordingObject<FakeToolManager> {
 public:
  static const DispatchTable<FakeToolManager>& Table();

  // What a run does and answers; without one, a run succeeds and writes nothing. On the calling
  // thread. Set it before a worker starts.
  std::function<std::int32_t(const ToolRun& run)> onRun;
  // What GetToolsForExtension answers, by extension; `tools[""]` where none stands.
  std::map<std::string, std::string> tools;

  std::int32_t RunTool(const char* tool, const char* files, const char* options,
                       const char* messageFile);
  std::int32_t InitTools(const char*, const char*, std::int32_t) { return 1; }
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
