#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/automation/Variant.h"

namespace tarn::host {

// Result of a build requested by a script.
struct ScriptBuild {
  std::string end;  // "succeeded", "failed", "interrupted" or "refused"
  int toolsRun = 0;
  int toolsFailed = 0;
  std::string problem;  // why it was not started; raised as an error in the script
};

// The tools' summary of an application's output, e.g. its size; empty if unknown.
struct ScriptSize {
  std::string text;
  std::string problem;  // why there is no such application; raised as an error in the script
};

// Services of a host for scripts, in addition to the server's methods. Called on the scripts'
// thread. Implementations must not throw.
class ScriptHost {
 public:
  virtual ~ScriptHost() = default;

  // Shows a line printed by a script. The line is logged separately.
  virtual void ShowLine(const std::string& line) = 0;
  // Prepares a call of the server's method: resolves relative paths in `arguments`. Returns why it
  // can't be called now, which is raised as an error in the script; an empty string if it can.
  virtual std::string PrepareCall(const std::string& method, std::vector<Variant>& arguments) = 0;
  // Called after the server's method has returned.
  virtual void OnCalled(const std::string& method) = 0;
  // Builds, waits for the end, and stores the tools' messages. `work` is "build", "rebuild" or
  // "clean"; `application` is a label or a path, or nullopt for the whole project.
  virtual ScriptBuild Build(const std::string& work,
                            const std::optional<std::string>& application) = 0;
  // Waits for a build that the script has started by a command, and returns its result; returns
  // "refused" immediately if none is running.
  virtual std::string WaitForBuild() = 0;
  virtual ScriptSize GetSize(const std::string& application) = 0;
  // Adds a configuration to the active application. `from`: see NewConfiguration. Returns why that
  // is impossible, or an empty string.
  virtual std::string AddConfiguration(const std::string& name,
                                       const std::optional<std::string>& from) = 0;
};

}  // namespace tarn::host
