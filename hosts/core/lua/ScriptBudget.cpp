#include "hosts/core/lua/ScriptBudget.h"

namespace tarn::host {

bool ScriptBudget::Look() {
  sinceLook = 0;
  if (abort != ScriptAbort::None) return false;
  if (stopWanted) {
    abort = ScriptAbort::Stopped;
  } else if (stepsLeft < 0) {
    abort = ScriptAbort::Steps;
  } else if (std::chrono::steady_clock::now() - since >= timeLeft) {
    abort = ScriptAbort::Time;
  }
  return abort == ScriptAbort::None;
}

void ScriptBudget::HoldClock() {
  timeLeft -= std::chrono::steady_clock::now() - since;
}

}  // namespace tarn::host
