#pragma once

#include <chrono>
#include <mutex>
#include <set>

#include "platform/process/Process.h"

namespace tarn::tools {

// The programs that run at the moment, so that they can be stopped from another thread.
class RunningTools {
 public:
  // From a request to end until a group is killed; short enough to leave the promise of two
  // seconds room.
  static constexpr std::chrono::milliseconds kGrace{500};

  bool IsStopping();
  // Asks all groups to end. Whatever is added from now on is stopped at once.
  void Stop();
  // Runs may begin again.
  void Resume();

 private:
  friend class RunningTool;

  void Add(Process& process);
  void Remove(Process& process);

  std::mutex lock;
  bool isStopping = false;
  std::set<Process*> processes;
};

// Keeps a program in the list while the object lives.
class RunningTool {
 public:
  RunningTool(RunningTools& list, Process& started) : tools(list), process(started) {
    tools.Add(process);
  }
  ~RunningTool() { tools.Remove(process); }
  RunningTool(const RunningTool&) = delete;
  RunningTool& operator=(const RunningTool&) = delete;

 private:
  RunningTools& tools;
  Process& process;
};

}  // namespace tarn::tools
