#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::tools {

// Journal of what happens to tool runs, for hosts that show which tools run at the same time: the
// messages to the frame report each tool only when its turn comes. Nothing is recorded, and a run
// costs nothing, unless a host watches. Thread-safe.
class RunEvents {
 public:
  RunEvents() = default;
  RunEvents(const RunEvents&) = delete;
  RunEvents& operator=(const RunEvents&) = delete;

  // Starts or ends recording, and clears the journal.
  void Watch(bool isWatched);
  bool IsWatched();
  // Returns the events since the last call as an element, in order; empty if there are none. Each
  // child is named after its event and has the number of its run in `Run` and the time in `Time`,
  // in microseconds of the steady clock:
  //
  //   Started   a process starts; `Lane` is the lowest number that no running tool has; contains
  //             the element that the frame receives as well (TARN_MSG_TOOL_STARTED)
  //   Output    its processes have printed something, `Bytes` in hexadecimal; only of runs of an
  //             action
  //   Ended     the last process has ended; `Done` is "Yes" if the run succeeded; `Exit` is its
  //             exit code
  //   Retiring  its turn has come: the result is checked and delivered
  //   Retired   it was delivered
  //   Dropped   the result isn't used
  std::string Take();

  // One run. Each function adds an event and is called at most once except where noted, in this
  // order. A run that was
  // started and not retired is dropped by the destructor.
  class Run {
   public:
    Run(RunEvents& journal, std::string startElement);
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run();

    void Start();
    // May be called any number of times. Dropped if the host doesn't take the events.
    void AddOutput(std::string_view text);
    void End(bool isDone, int exitCode);
    void BeginRetiring();
    void Retire();

   private:
    void Add(const char* name, const std::string& attributes, const std::string& content);

    RunEvents& events_;
    std::string start_;
    int number_ = 0;  // 0 before the start
    std::size_t lane_ = 0;
    bool isRunning_ = false;
    bool isRetiring_ = false;
    bool isRetired_ = false;
  };

 private:
  std::mutex lock_;  // guards everything below
  bool isWatched_ = false;
  int lastRun_ = 0;
  std::vector<bool> lanes_;  // true: in use
  std::string journal_;
};

}  // namespace tarn::tools
