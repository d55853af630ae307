#pragma once

#include <string>

#include "hosts/core/lua/ScriptBudget.h"
#include "hosts/core/lua/ScriptHost.h"
#include "platform/automation/Dispatch.h"

namespace tarn::host {

enum class ScriptEnd { Done, Failed, Stopped };

struct ScriptOutcome {
  ScriptEnd end = ScriptEnd::Done;
  std::string error;  // with the script's name and line; empty if done
};

// Runs Lua scripts against a server: its methods are the table `tarn`, printed lines go to its log,
// and there is no access to files, processes, or code that isn't text. Each script has its own
// interpreter. A script started by another one through the server shares its limits, and its
// failure is raised as an error in the outer one.
//
// Single thread only, except RequestStop.
class ScriptRunner {
 public:
  // `scriptHost` is borrowed and may be null; then the table `host` doesn't exist.
  explicit ScriptRunner(ScriptHost* scriptHost, ScriptLimits scriptLimits = {})
      : host_(scriptHost), limits_(scriptLimits) {}
  ScriptRunner(const ScriptRunner&) = delete;
  ScriptRunner& operator=(const ScriptRunner&) = delete;

  // Runs a script to its end. `name` precedes line numbers in error messages; it is empty if the
  // text was received in a message. Errors are also written to the server's log.
  ScriptOutcome Run(IDispatch& server, const std::string& text, std::string name);
  bool IsRunning() const { return depth_ > 0; }

  // Ends the running script, or the next one if none is running. May be called from any thread.
  void RequestStop() { budget_.RequestStop(); }
  // Withdraws a request that was made while no script was running.
  void ClearStop() { budget_.ClearStop(); }

 private:
  friend class ScriptState;

  ScriptOutcome RunOne(IDispatch& server, const std::string& text, const std::string& name);

  ScriptHost* host_;
  ScriptLimits limits_;
  ScriptBudget budget_;
  int depth_ = 0;
  std::string nextName_;      // of the file that a script passes to the server
  std::string innerFailure_;  // of the script that ended last, for the one that started it
};

}  // namespace tarn::host
