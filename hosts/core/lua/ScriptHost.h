#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/automation/Variant.h"

namespace tarn::host {

// How a build that a script asked for has ended.
struct ScriptBuild {
  std::string end;  // "succeeded", "failed", "interrupted" or "refused"
  int toolsRun = 0;
  int toolsFailed = 0;
  std::string problem;  // why it was not even tried, which is an error in the script
};

// What the tools said of an application's output, e.g. its size; empty if nothing is known.
struct ScriptSize {
  std::string text;
  std::string problem;  // why there is no such application, which is an error in the script
};

// What a host does for scripts beside the server's own methods. On the scripts' thread. No
// exception may come out.
class ScriptHost {
 public:
  virtual ~ScriptHost() = default;

  // A line that a script prints; it goes to the log by itself.
  virtual void ShowLine(const std::string& line) = 0;
  // Returns why the server's method can't be called now, which is an error in the script; empty if
  // it can.
  virtual std::string CheckCall(const std::string& method,
                                const std::vector<Variant>& arguments) = 0;
  // Builds, waits for the end, and keeps what the tools reported. `work` is "build", "rebuild" or
  // "clean", `application` a label or a path, or nothing for the whole project.
  virtual ScriptBuild Build(const std::string& work,
                            const std::optional<std::string>& application) = 0;
  // Waits for a build that the script has started by a command, and tells its end; at once, with
  // "refused", when none runs.
  virtual std::string WaitForBuild() = 0;
  virtual ScriptSize GetSize(const std::string& application) = 0;
  // Adds a configuration to the active application. `from`: see NewConfiguration. Returns why that
  // can't be done, or an empty string.
  virtual std::string AddConfiguration(const std::string& name,
                                       const std::optional<std::string>& from) = 0;
};

}  // namespace tarn::host
