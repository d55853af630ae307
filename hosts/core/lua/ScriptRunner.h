#pragma once

#include <string>

#include "hosts/core/lua/ScriptBudget.h"
#include "hosts/core/lua/ScriptHost.h"
#include "platform/automation/Dispatch.h"

namespace tarn::host {

enum class ScriptEnd { Done, Failed, Stopped };

struct ScriptOutcome {
  ScriptEnd end = ScriptEnd::Done;
  std::string error;  // with the script's name and the line; empty when done
};

// Runs scripts in Lua against a server: its methods as the table `tarn`, lines printed to its log,
// and no way to files, processes, or code that isn't text. Each script has an interpreter of its
// own; a script that another one starts through the server shares its limits, and its failure is an
// error in the other.
//
// On one thread, except RequestStop.
class ScriptRunner {
 public:
  // `scriptHost` is borrowed and may be null: the table `host` is missing then.
  explicit ScriptRunner(ScriptHost* scriptHost, ScriptLimits scriptLimits = {})
      : host(scriptHost), limits(scriptLimits) {}
  ScriptRunner(const ScriptRunner&) = delete;
  ScriptRunner& operator=(const ScriptRunner&) = delete;

  // Runs a text to its end. `name` stands in front of the lines in errors; empty for a text that
  // came in a message. What goes wrong is in the server's log as well.
  ScriptOutcome Run(IDispatch& server, const std::string& text, std::string name);
  bool IsRunning() const { return depth > 0; }

  // Ends the script that runs, or the next one if none does. From any thread.
  void RequestStop() { budget.RequestStop(); }
  // Takes a request back that came while no script was running.
  void ForgetStop() { budget.ForgetStop(); }

 private:
  friend class ScriptState;

  ScriptOutcome RunOne(IDispatch& server, const std::string& text, const std::string& name);

  ScriptHost* host;
  ScriptLimits limits;
  ScriptBudget budget;
  int depth = 0;
  std::string nextName;      // of the file that a script hands to the server
  std::string innerFailure;  // of the script that ended last, for the one that started it
};

}  // namespace tarn::host
