#include "components/tools/RunningTools.h"

namespace tarn::tools {

bool RunningTools::IsStopping() {
  const std::lock_guard guard(lock);
  return isStopping;
}

void RunningTools::Stop() {
  const std::lock_guard guard(lock);
  isStopping = true;
  for (Process* process : processes) process->Stop(kGrace);
}

void RunningTools::Resume() {
  const std::lock_guard guard(lock);
  isStopping = false;
}

// A stop may be requested after the process started but before it is added.
void RunningTools::Add(Process& process) {
  const std::lock_guard guard(lock);
  processes.insert(&process);
  if (isStopping) process.Stop(kGrace);
}

void RunningTools::Remove(Process& process) {
  const std::lock_guard guard(lock);
  processes.erase(&process);
}

}  // namespace tarn::tools
