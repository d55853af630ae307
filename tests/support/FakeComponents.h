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

// Records the calls of a fake, one line per call: the operation and its arguments, separated by
// spaces. An empty string is shown as "", a null one as null. Thread-safe.
class CallRecorder {
 public:
  // If set, called with the operation's name after a call is recorded and before it is executed.
  std::function<void(std::string_view operation)> onCall;

  std::vector<std::string> Calls() const;
  // The calls of one operation.
  std::vector<std::string> CallsOf(std::string_view operation) const;
  std::vector<std::string> TakeCalls();

 protected:
  void Record(std::string_view operation, std::span<const Variant> arguments);

 private:
  mutable std::mutex lock_;
  std::vector<std::string> calls_;
};

// Base of an automation object that records the calls made through Invoke(). Direct C++ calls are
// not recorded.
template <class T>
class RecordingObject : public DispatchObject<T>, public CallRecorder {
 public:
  DispatchResult Invoke(DispatchId id, std::span<const Variant> arguments,
                        Variant& result) override {
    if (const auto* method = T::Table().Find(id)) Record(method->info.name, arguments);
    return DispatchObject<T>::Invoke(id, arguments, result);
  }
};

// Fake property manager: stores values by set, section and property on levels. Has no definitions
// except for the defaults that a test sets. Its formats:
//
//   values   <Values><V K="C.General.Header" V="main.c" />...</Values>
//   options  <Opt Header="Debug"><Set Header="C"><Sec Header="Build">
//            <Prop Header="Tool" Removable="Yes" Value="cc" /></Sec></Set></Opt>
//
// In both, special bytes of a value (quotes, brackets, backslash, control bytes, &) are written as
// &#n;.
class FakePropertyManager : public RecordingObject<FakePropertyManager> {
 public:
  static const DispatchTable<FakePropertyManager>& Table();

  // Default values by "set.section.property"; ".section.property" applies to every set.
  std::map<std::string, std::string> defaults;
  // Results of the operations of these names.
  std::string changedProperty;
  std::string newConfigName;
  std::string propState;  // also set by SetPropState
  std::int32_t propertyWindow = 0;
  // State after the last calls.
  std::string currentConfig;
  int holds = 0;  // calls of BeginUpdate without EndUpdate

  // Implements every operation that only has to succeed.
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
  void ClearValues() { levels_.assign(1, {}); }
  std::string GetChangedProperty() { return changedProperty; }
  void BeginUpdate() { ++holds; }
  void EndUpdate() { holds -= holds > 0 ? 1 : 0; }
  std::string GetValuesAsText(const char* set, const char* section, const char* property);
  void BeginChildLevel() { levels_.emplace_back(); }
  std::string GetNewConfigName() { return newConfigName; }
  void SetCurrentConfig(const char* config) { currentConfig = OrEmpty(config); }
  std::string GetPropState() { return propState; }
  void SetPropState(const char* state) { propState = OrEmpty(state); }
  std::int32_t ApplyOptions(const char* config, const char* xml);
  void ProjectClosing();

 private:
  using Level = std::vector<std::pair<std::string, std::string>>;  // key and value, by arrival

  void Store(const std::string& key, std::string text);

  std::vector<Level> levels_ = std::vector<Level>(1);  // the innermost last
};

// Arguments of one RunTool call.
struct ToolRun {
  std::string tool;
  std::string files;
  std::string options;
  NullableText messageFile;
};

// Fake tool manager. RunTool may be called from any thread.
class FakeToolManager : public RecordingObject<FakeToolManager> {
 public:
  static const DispatchTable<FakeToolManager>& Table();

  // Implementation of a run, called on the calling thread; without one, a run succeeds without
  // output. Set it before a worker starts.
  std::function<std::int32_t(const ToolRun& run)> onRun;
  // Results of GetToolsForExtension by extension; `tools[""]` is the fallback.
  std::map<std::string, std::string> tools;
  std::string runFiles;  // result of GetRunFiles

  std::int32_t RunTool(const char* tool, const char* files, const char* options,
                       const char* messageFile);
  std::int32_t InitTools(const char*, const char*, std::int32_t) { return 1; }
  std::string GetToolsForExtension(const char* extension);
  std::string GetRunFiles(const char*, const char*, const char*) { return runFiles; }
};

// One fake of each kind, returned by every CreateInstance of its class.
class FakeComponents {
 public:
  FakeComponents();

  // Registers both under their ProgIDs.
  void RegisterWith(ClassRegistry& classes) const;

  FakePropertyManager& Properties() const;
  FakeToolManager& Tools() const;

 private:
  DispatchPtr properties_;
  DispatchPtr tools_;
};

}  // namespace tarn::test
