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

// Program to start. It is started directly, never through a shell. Its standard input is empty
// unless `keepsInputOpen` is set, and it starts with no signal blocked or ignored, regardless of
// this process's signal handling.
struct ProcessRequest {
  std::string program;                 // a path, or a name to look up in the child's PATH
  std::vector<std::string> arguments;  // without the program name itself
  // Variables added to this process's environment, replacing those of the same name.
  std::vector<std::pair<std::string, std::string>> environment;
  std::string folder = {};  // working folder; empty: the current one
  // Descriptors of this process that the program inherits with the same numbers, above 3.
  std::vector<int> passed = {};
  bool mayOutlive = false;  // keeps running if this process ends
  // Its input has no end: a program that reads it waits.
  bool keepsInputOpen = false;
};

struct ProcessExit {
  int code = 0;  // exit code; 128 + signal if ended by a signal
  bool signalled = false;
};

// A running program in a process group of its own. Stopping it also ends all of its descendants,
// even those that have left the group; so does the end of this process, even if it is killed,
// unless the request sets `mayOutlive`. One thread may wait while others call Stop(). Destroying a
// process that was not waited for kills it.
class Process {
 public:
  virtual ~Process() = default;

  // Reads both streams to their end, passes each chunk to `onOutput` as it arrives (on the waiting
  // thread; `fromErrorStream` identifies the stream), then waits for the exit. Never deadlocks on a
  // full pipe. Returns as soon as the program itself has ended and its pipes are closed, or after a
  // short grace period if a descendant keeps them open. Without a stop, such descendants keep
  // running. Waiting again returns the same exit.
  using OutputHandler = std::function<void(std::string_view text, bool fromErrorStream)>;
  virtual ProcessExit WaitWithOutput(const OutputHandler& onOutput) = 0;

  // Asks the whole group to terminate. Whatever is left of the program and its descendants after
  // `grace` is killed; WaitWithOutput() returns after the last of them has ended. Returns
  // immediately. Thread-safe, and a no-op after the end.
  virtual void Stop(std::chrono::milliseconds grace) = 0;
};

// Starts programs. Tests replace it with a fake.
class ProcessLauncher {
 public:
  virtual ~ProcessLauncher() = default;
  // Fails with NotFound if the program does not exist, and with Io if the working folder cannot be
  // entered; the error's place is the offending path.
  virtual Result<std::unique_ptr<Process>> Start(const ProcessRequest& request) = 0;

  static ProcessLauncher& Native();
};

// Full path of the program that PATH contains, or of a path to a program; empty if there is no
// executable one. Processes inherit the PATH that is used here: empty entries, which would mean the
// current folder, are left out, and relative ones start at the folder of this process.
std::string FindProgram(std::string_view name);

}  // namespace tarn
