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

// A stop can come between the start of a program and its entry here.
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
