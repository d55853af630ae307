#include "components/tools/RunningToolSet.h"

namespace tarn::tools {

bool RunningToolSet::IsStopping() {
  const std::lock_guard guard(lock_);
  return isStopping_;
}

void RunningToolSet::Stop() {
  const std::lock_guard guard(lock_);
  isStopping_ = true;
  for (Process* process : processes_) process->Stop(kGrace);
}

void RunningToolSet::Resume() {
  const std::lock_guard guard(lock_);
  isStopping_ = false;
}

// A stop may be requested after the process started but before it is added.
void RunningToolSet::Add(Process& process) {
  const std::lock_guard guard(lock_);
  processes_.insert(&process);
  if (isStopping_) process.Stop(kGrace);
}

void RunningToolSet::Remove(Process& process) {
  const std::lock_guard guard(lock_);
  processes_.erase(&process);
}

}  // namespace tarn::tools
