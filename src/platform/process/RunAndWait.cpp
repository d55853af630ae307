#include "platform/process/RunAndWait.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace tarn {

namespace {

constexpr int kTimeIsUp = -1;

// Shared by the waiting thread and the caller; freed by the last of them.
struct Waiting {
  std::unique_ptr<Process> process;
  std::mutex lock;
  std::condition_variable ended;
  std::string written;
  std::optional<int> code;
};

void WaitForEnd(const std::shared_ptr<Waiting>& waiting) {
  const ProcessExit exit =
      waiting->process->WaitWithOutput([&waiting](std::string_view text, bool) {
        const std::lock_guard<std::mutex> hold(waiting->lock);
        waiting->written += text;
      });
  const std::lock_guard<std::mutex> hold(waiting->lock);
  waiting->code = exit.code;
  waiting->ended.notify_all();
}

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view commandLine) {
  std::vector<std::string> parts;
  std::string part;
  bool isQuoted = false;
  bool isPart = false;
  for (std::size_t i = 0; i < commandLine.size(); ++i) {
    const char c = commandLine[i];
    if (c == '\\' && i + 1 < commandLine.size() && commandLine[i + 1] == '"') {
      part += commandLine[++i];
      isPart = true;
    } else if (c == '"') {
      isQuoted = !isQuoted;
      isPart = true;
    } else if (c == ' ' && !isQuoted) {
      if (isPart) parts.push_back(std::move(part));
      part.clear();
      isPart = false;
    } else {
      part += c;
      isPart = true;
    }
  }
  if (isPart) parts.push_back(std::move(part));
  return parts;
}

std::int32_t RunAndWait(ProcessLauncher& launcher, const std::string& commandLine, int seconds,
                        std::string& written) {
  std::vector<std::string> parts = SplitCommandLine(commandLine);
  if (parts.empty()) return 0;
  ProcessRequest request;
  request.program = parts.front();
  request.arguments.assign(parts.begin() + 1, parts.end());
  request.mayOutlive = true;
  Result<std::unique_ptr<Process>> started = launcher.Start(request);
  if (!started) return 0;

  const auto waiting = std::make_shared<Waiting>();
  waiting->process = std::move(*started);
  // A detached thread: the program may run longer than the caller waits, and still has to be waited
  // for, to release its process table entry and because destroying the Process would kill it.
  std::thread(WaitForEnd, waiting).detach();
  std::unique_lock<std::mutex> hold(waiting->lock);
  waiting->ended.wait_for(hold, std::chrono::seconds(seconds),
                          [&waiting] { return waiting->code.has_value(); });
  written = waiting->written;
  return waiting->code.value_or(kTimeIsUp);
}

}  // namespace tarn
