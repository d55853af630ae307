#pragma once

#include <condition_variable>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "components/tools/EarlyRun.h"
#include "components/tools/JobPermits.h"

namespace tarn::tools {

// Runs that start before a build reaches them, on threads of their own, at most a given number at
// the same time. Each retains its messages and its record until it is taken; a run that is never
// taken leaves nothing behind.
//
// Calling sequence for a run: Start, IsValid, Take. These and Drop are called by one thread at a
// time, all other functions by any. None sends messages.
class EarlyRuns {
 public:
  // `jobPermits` is borrowed.
  explicit EarlyRuns(JobPermits& jobPermits) : permits_(jobPermits) {}
  EarlyRuns(const EarlyRuns&) = delete;
  EarlyRuns& operator=(const EarlyRuns&) = delete;
  ~EarlyRuns();

  // Sets the number of tools that may run at the same time, including those for which a Turn
  // exists; 1 or less disables early runs.
  void SetJobs(int count);
  int GetJobs();

  // Queues a run. Returns false if early runs are disabled or stopped, if no thread can be created,
  // or if another run that has not been taken writes one of the same files.
  bool Start(std::unique_ptr<EarlyRun> run);
  // Returns the run with this key, which may not have ended; null if there is none. Valid until
  // IsValid, Take or Drop.
  const EarlyRun* Get(const std::string& key);
  // Waits until the run with this key has ended. Returns true if its result, which may be a
  // failure, is what the same run would produce now, given the limit for messages that now applies;
  // otherwise removes the run and its results. Returns false if there is no such run.
  bool IsValid(const std::string& key, std::size_t mostMessages);
  // Removes a run that IsValid has accepted, and returns it; null if there is none with this key.
  std::unique_ptr<EarlyRun> Take(const std::string& key);
  // Stops all runs, waits for their end and removes their results.
  void Drop();

  // Stops all runs and starts no more until Resume. Returns immediately.
  void Stop();
  void Resume();

  // Reserves one of the jobs for a tool that runs now. Waits for early runs if all jobs are in use.
  class Turn {
   public:
    explicit Turn(EarlyRuns& list);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    EarlyRuns& runs_;
  };

 private:
  enum class State { Queued, Running, Ended };
  struct Entry {
    std::unique_ptr<EarlyRun> run;
    State state = State::Queued;
    bool isValid = false;  // IsValid returned true
  };
  using Entries = std::list<Entry>;

  Entries::iterator Find(const std::string& key);
  Entries::iterator FindQueued();
  bool MayStart() const;
  JobPermits::Answer AskToRun(const Entry& entry);
  void AwaitChange(std::unique_lock<std::mutex>& hold, JobPermits::Answer answer);
  void Notify();
  bool EnsureThread();
  void RunQueued();

  JobPermits& permits_;
  std::mutex lock_;  // guards everything below; not held while a tool runs
  std::condition_variable changed_;
  int jobs_ = 1;
  int running_ = 0;       // early runs
  int turns_ = 0;         // tools that run now
  int waitingTurns_ = 0;  // tools that wait for their turn
  bool isStopping_ = false;
  bool isEnding_ = false;
  bool isPolling_ = false;          // a thread waits for a token
  const Entry* awaited_ = nullptr;  // the build waits for it
  Entries entries_;                 // in the order of Start
  std::vector<std::thread> threads_;
};

}  // namespace tarn::tools
