#include "hosts/core/lua/ScriptRunner.h"

#include "hosts/core/lua/ScriptState.h"

namespace tarn::host {

ScriptOutcome ScriptRunner::Run(IDispatch& server, const std::string& text, std::string name) {
  if (name.empty()) name = nextName.empty() ? "script" : nextName;
  nextName.clear();
  innerFailure.clear();
  if (depth == 0) budget.Begin(limits);
  ++depth;
  ScriptOutcome outcome = RunOne(server, text, name);
  --depth;
  if (depth == 0) {
    budget.ForgetStop();
  } else {
    innerFailure = outcome.error;
  }
  return outcome;
}

ScriptOutcome ScriptRunner::RunOne(IDispatch& server, const std::string& text,
                                   const std::string& name) {
  ScriptOutcome outcome;
  ScriptState state(*this, server);
  if (depth > limits.depth) {
    outcome.error = name + ": scripts call each other more than " + std::to_string(limits.depth) +
                    " levels deep";
  } else {
    budget.StartClock();
    outcome.error = state.Run(text, name);
    budget.HoldClock();
  }
  if (outcome.error.empty()) return outcome;
  outcome.end = budget.GetAbort() == ScriptAbort::Stopped ? ScriptEnd::Stopped : ScriptEnd::Failed;
  state.Report(outcome.error);
  return outcome;
}

}  // namespace tarn::host
