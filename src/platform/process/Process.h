#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Result.h"

namespace tarn {

// What to start. The program is started directly, never through a shell. Its input is empty, and
// it starts with no signal blocked or ignored, whatever this process does with signals.
struct ProcessRequest {
  std::string program;                 // a path, or a name that is looked for in the PATH it gets
  std::vector<std::string> arguments;  // without the program's own name
  // Added to, or put in place of, the environment of this process.
  std::vector<std::pair<std::string, std::string>> environment;
  std::string folder = {};  // working folder; empty: the current one
  bool mayOutlive = false;  // goes on if this process ends
};

struct ProcessExit {
  int code = 0;  // exit code; 128 + signal when a signal ended it
  bool signalled = false;
};

// A running program in a process group of its own. Stopping it takes along everything that it has
// started, also what has left the group; so does the end of this process, even if it is killed,
// unless the request says otherwise.
// One thread may wait while others ask it to stop. Destroying one that was not waited for kills it.
class Process {
 public:
  virtual ~Process() = default;

  // Reads both streams to their end, hands each piece on as it comes (called on the waiting
  // thread; `fromErrorStream` tells which), then waits for the exit. Never deadlocks on a full
  // pipe. Returns as soon as the program itself has ended and its pipes are closed, or a short
  // grace time later if a grandchild keeps them open. What the program leaves running without a
  // stop goes on by itself. Waiting again returns the same exit.
  using OutputHandler = std::function<void(std::string_view text, bool fromErrorStream)>;
  virtual ProcessExit WaitWithOutput(const OutputHandler& onOutput) = 0;

  // Asks the whole group to end. What is left of the program and of its descendants after `grace`
  // is killed, and the wait ends after the last of them. Returns immediately; may be called from
  // any thread, also after the end.
  virtual void Stop(std::chrono::milliseconds grace) = 0;
};

// Starts programs; the seam that tests replace.
class ProcessLauncher {
 public:
  virtual ~ProcessLauncher() = default;
  // NotFound when there is no such program or no such folder; the error's place tells which.
  virtual Result<std::unique_ptr<Process>> Start(const ProcessRequest& request) = 0;

  static ProcessLauncher& Native();
};

// The full path of a program that PATH holds, or of a path as it stands; empty when there is none
// that may be run. Empty parts of PATH, which would mean the current folder, are left out.
std::string FindProgram(std::string_view name);

}  // namespace tarn
