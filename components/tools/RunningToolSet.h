#pragma once

#include <chrono>
#include <mutex>
#include <set>

#include "platform/process/Process.h"

namespace tarn::tools {

// The set of processes currently running, so that another thread can stop them. Thread-safe.
class RunningToolSet {
 public:
  // Time between the request to terminate and the kill of a process group; short enough to keep the
  // promised limit of two seconds.
  static constexpr std::chrono::milliseconds kGrace{500};

  bool IsStopping();
  // Requests all process groups to terminate. Processes added later are stopped immediately.
  void Stop();
  // Allows new runs.
  void Resume();

 private:
  friend class RunningTool;

  void Add(Process& process);
  void Remove(Process& process);

  std::mutex lock_;
  bool isStopping_ = false;
  std::set<Process*> processes_;
};

// RAII registration of a process in the set.
class RunningTool {
 public:
  RunningTool(RunningToolSet& list, Process& started) : tools_(list), process_(started) {
    tools_.Add(process_);
  }
  ~RunningTool() { tools_.Remove(process_); }
  RunningTool(const RunningTool&) = delete;
  RunningTool& operator=(const RunningTool&) = delete;

 private:
  RunningToolSet& tools_;
  Process& process_;
};

}  // namespace tarn::tools
