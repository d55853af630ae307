#include "hosts/core/lua/ScriptBudget.h"

namespace tarn::host {

bool ScriptBudget::Poll() {
  sincePoll_ = 0;
  if (abort_ != ScriptAbort::None) return false;
  if (stopWanted_) {
    abort_ = ScriptAbort::Stopped;
  } else if (stepsLeft_ < 0) {
    abort_ = ScriptAbort::Steps;
  } else if (std::chrono::steady_clock::now() - since_ >= timeLeft_) {
    abort_ = ScriptAbort::Time;
  }
  return abort_ == ScriptAbort::None;
}

void ScriptBudget::HoldClock() {
  timeLeft_ -= std::chrono::steady_clock::now() - since_;
}

}  // namespace tarn::host
