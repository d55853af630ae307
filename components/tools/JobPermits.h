#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "platform/process/Jobserver.h"
#include "platform/process/Process.h"

namespace tarn::tools {

// Limits for starting a tool while others run. Negative values mean no limit.
struct StartLimits {
  double load = -1;               // load average from which on none is started
  std::int64_t memory = -1;       // bytes that have to be available
  std::int64_t percentFree = -1;  // the same, as a part of the total memory
};

// Decides whether a tool may start while others run. The first tool needs no permit; each further
// one takes a token of a jobserver: of the program that has started this one or, if there is none,
// of one for the tools of this process. Thread-safe.
class JobPermits {
 public:
  enum class Answer {
    Yes,
    NoToken,  // there may be one after Wait
    Loaded,   // the answer may change any time
  };

  // `flags`: MAKEFLAGS of this process.
  explicit JobPermits(std::string flags) : flags_(std::move(flags)) {}

  // Takes the tokens from the jobserver that MAKEFLAGS describes from now on, if there is one.
  // Returns the number of jobs in MAKEFLAGS; 0 if there is none. On error the jobserver is ignored.
  Result<int> Join();
  // The number of jobs of the jobserver for the tools of this process; there is none below 2.
  void SetJobs(int count);
  void SetLimits(const StartLimits& limits);

  // `active`: number of tools that run. `isNeeded`: the build waits for this one, and load doesn't
  // delay it.
  Answer Take(int active, bool isNeeded);
  // Returns tokens that `active` running tools don't need.
  void ReturnUnneeded(int active);

  // Waits until there may be a token, until Wake(), or until the time has passed.
  void Wait(std::chrono::milliseconds most);
  void Wake();

  // Makes the jobserver available to a tool. The descriptors in the request are valid until the
  // next call of Join or SetJobs.
  void Describe(ProcessRequest& request);

 private:
  std::shared_ptr<Jobserver> GetJobserver();

  const std::string flags_;
  std::mutex lock_;  // guards the following
  std::shared_ptr<Jobserver> jobserver_;
  bool hasJoined_ = false;
  int jobs_ = 1;
  StartLimits limits_;
};

// Starts tools, and makes a jobserver available to them.
class JobserverLauncher final : public ProcessLauncher {
 public:
  // Both are borrowed.
  JobserverLauncher(ProcessLauncher* inner, JobPermits& permits)
      : inner_(inner), permits_(permits) {}
  Result<std::unique_ptr<Process>> Start(const ProcessRequest& request) override;

 private:
  ProcessLauncher* const inner_;
  JobPermits& permits_;
};

}  // namespace tarn::tools
