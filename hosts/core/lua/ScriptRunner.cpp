#include "hosts/core/lua/ScriptRunner.h"

#include "hosts/core/lua/ScriptState.h"

namespace tarn::host {

ScriptOutcome ScriptRunner::Run(IDispatch& server, const std::string& text, std::string name) {
  if (name.empty()) name = nextName_.empty() ? "script" : nextName_;
  nextName_.clear();
  innerFailure_.clear();
  if (depth_ == 0) budget_.Begin(limits_);
  ++depth_;
  ScriptOutcome outcome = RunOne(server, text, name);
  --depth_;
  if (depth_ == 0) {
    budget_.ClearStop();
  } else {
    innerFailure_ = outcome.error;
  }
  return outcome;
}

ScriptOutcome ScriptRunner::RunOne(IDispatch& server, const std::string& text,
                                   const std::string& name) {
  ScriptOutcome outcome;
  ScriptState state(*this, server);
  if (depth_ > limits_.depth) {
    outcome.error = name + ": scripts call each other more than " + std::to_string(limits_.depth) +
                    " levels deep";
  } else {
    budget_.StartClock();
    outcome.error = state.Run(text, name);
    budget_.HoldClock();
  }
  if (outcome.error.empty()) return outcome;
  outcome.end = budget_.GetAbort() == ScriptAbort::Stopped ? ScriptEnd::Stopped : ScriptEnd::Failed;
  state.Report(outcome.error);
  return outcome;
}

}  // namespace tarn::host
