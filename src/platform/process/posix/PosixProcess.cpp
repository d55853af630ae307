#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <optional>

#include "platform/process/Process.h"
#include "platform/process/posix/Descriptor.h"
#include "platform/process/posix/Spawn.h"

// The waiting thread does everything: it reads both streams, hears of the program's end through a
// descriptor of the process, hears of a stop through a pipe, and kills the group when a stop's time
// is over. So no thread of ours outlives a process object.
//
// The ended program stays unreaped until the streams are done. As long as it does, its number, and
// with it the group's, belongs to nobody else, and signals to the group cannot hit a stranger.
namespace tarn {

namespace {

using Clock = std::chrono::steady_clock;

// How long a grandchild may keep the pipes open behind the program's end.
constexpr std::chrono::milliseconds kGraceForGrandchildren{250};
// How often to look for the end on a system without descriptors of processes.
constexpr std::chrono::milliseconds kLookInterval{20};
constexpr int kUnknownExit = 255;
// What a pipe may still hold when its time is over.
constexpr std::size_t kPipeCapacity = 65536;

// Readable once the process has ended; none where the system has no such thing.
Descriptor OpenProcess(pid_t pid) {
#ifdef SYS_pidfd_open
  return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
#else
  static_cast<void>(pid);
  return Descriptor();
#endif
}

class PosixProcess final : public Process {
 public:
  // -1 until Start.
  pid_t pid = -1;
  Pipe output;
  Pipe errors;
  Pipe wake;

  ~PosixProcess() override {
    if (pid < 0 || exit) return;
    SignalGroup(SIGKILL);
    Reap();
  }

  ProcessExit WaitWithOutput(const OutputHandler& onOutput) override {
    if (exit) return *exit;
    const Descriptor process = OpenProcess(pid);
    std::optional<Clock::time_point> ended;
    while (!IsOver(ended)) {
      PollOnce(process.Get(), UntilNextStep(ended, static_cast<bool>(process)), onOutput);
      if (!ended && HasEnded()) ended = Clock::now();
      KillAtDeadline();
    }
    // What was written in time is not lost when the streams' end does not come.
    ReadRest(output.reader, false, onOutput);
    ReadRest(errors.reader, true, onOutput);
    if (StopDeadline()) SignalGroup(SIGKILL);
    return Reap();
  }

  void Stop(std::chrono::milliseconds grace) override {
    {
      const std::lock_guard guard(lock);
      if (exit) return;
      const auto deadline = Clock::now() + std::clamp(grace, std::chrono::milliseconds(0),
                                                      std::chrono::milliseconds(86400000));
      stopDeadline = stopDeadline ? std::min(*stopDeadline, deadline) : deadline;
      kill(-pid, SIGTERM);
      kill(-pid, SIGCONT);  // a halted process would not hear the first
    }
    const char mark = 0;
    // A full pipe means that the waiting thread will wake up anyway.
    [[maybe_unused]] const auto written = write(wake.writer.Get(), &mark, 1);
  }

 private:
  // Over when the program has ended and both streams have too, or the time for that has passed.
  bool IsOver(std::optional<Clock::time_point> ended) {
    if (!ended) return false;
    if (!output.reader && !errors.reader) return true;
    // After a stop the group gets its time, and what it says in it is read.
    if (StopDeadline() && !killed) return false;
    return Clock::now() >= GraceEnd(*ended);
  }

  Clock::time_point GraceEnd(Clock::time_point ended) const {
    return std::max(ended, killed.value_or(ended)) + kGraceForGrandchildren;
  }

  // Milliseconds for poll; -1 for no limit.
  int UntilNextStep(std::optional<Clock::time_point> ended, bool hearsEnd) {
    std::optional<Clock::time_point> next;
    const auto consider = [&next](Clock::time_point time) {
      next = next ? std::min(*next, time) : time;
    };
    if (const auto deadline = StopDeadline(); deadline && !killed) {
      consider(*deadline);
    } else if (ended) {
      consider(GraceEnd(*ended));
    }
    if (!ended && !hearsEnd) consider(Clock::now() + kLookInterval);
    if (!next) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
  }

  void PollOnce(int process, int milliseconds, const OutputHandler& onOutput) {
    // A negative descriptor is passed over.
    std::array<pollfd, 4> watched{{{output.reader.Get(), POLLIN, 0},
                                   {errors.reader.Get(), POLLIN, 0},
                                   {wake.reader.Get(), POLLIN, 0},
                                   {sawEnd ? -1 : process, POLLIN, 0}}};
    if (poll(watched.data(), watched.size(), milliseconds) <= 0) return;
    if (watched[0].revents != 0) ReadOnce(output.reader, false, onOutput);
    if (watched[1].revents != 0) ReadOnce(errors.reader, true, onOutput);
    if (watched[2].revents != 0) {
      std::array<char, 64> marks{};
      [[maybe_unused]] const auto read = ::read(wake.reader.Get(), marks.data(), marks.size());
    }
  }

  // The number of bytes that came; closes the stream at its end.
  std::size_t ReadOnce(Descriptor& stream, bool fromErrorStream, const OutputHandler& onOutput) {
    std::array<char, 16384> buffer;
    const ssize_t count = read(stream.Get(), buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return 0;
    if (count <= 0) {
      stream.Close();
      return 0;
    }
    const auto size = static_cast<std::size_t>(count);
    if (onOutput) onOutput(std::string_view(buffer.data(), size), fromErrorStream);
    return size;
  }

  void ReadRest(Descriptor& stream, bool fromErrorStream, const OutputHandler& onOutput) {
    std::size_t left = kPipeCapacity;
    while (stream && left > 0) {
      const std::size_t count = ReadOnce(stream, fromErrorStream, onOutput);
      if (count == 0) break;
      left -= std::min(left, count);
    }
    stream.Close();
  }

  // Leaves the ended program unreaped.
  bool HasEnded() {
    siginfo_t info{};
    const int result = waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT);
    sawEnd = result == 0 ? info.si_pid == pid : errno == ECHILD;
    return sawEnd;
  }

  std::optional<Clock::time_point> StopDeadline() {
    const std::lock_guard guard(lock);
    return stopDeadline;
  }

  void KillAtDeadline() {
    const auto deadline = StopDeadline();
    if (!deadline || killed || Clock::now() < *deadline) return;
    SignalGroup(SIGKILL);
    killed = Clock::now();
  }

  void SignalGroup(int signal) {
    const std::lock_guard guard(lock);
    if (!exit) kill(-pid, signal);
  }

  ProcessExit Reap() {
    int status = 0;
    siginfo_t info{};
    // The wait itself without the lock, so that a stop never has to wait for it.
    while (waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    const std::lock_guard guard(lock);
    pid_t reaped = -1;
    do {
      reaped = waitpid(pid, &status, 0);
    } while (reaped < 0 && errno == EINTR);
    if (reaped != pid) {
      // Somebody took the exit away, as the system does where SIGCHLD is ignored: not a success.
      exit = ProcessExit{kUnknownExit, false};
    } else {
      exit = WIFSIGNALED(status) ? ProcessExit{128 + WTERMSIG(status), true}
                                 : ProcessExit{WEXITSTATUS(status), false};
    }
    return *exit;
  }

  std::mutex lock;  // guards the two below, and that no signal follows the reaping
  std::optional<ProcessExit> exit;
  std::optional<Clock::time_point> stopDeadline;
  // Of the waiting thread.
  std::optional<Clock::time_point> killed;
  bool sawEnd = false;
};

Error LastError(const ProcessRequest& request) {
  return {ErrorCode::Io, std::strerror(errno), request.program};
}

bool SetNonBlocking(const Descriptor& descriptor) {
  return fcntl(descriptor.Get(), F_SETFL, O_NONBLOCK) == 0;
}

class PosixProcessLauncher final : public ProcessLauncher {
 public:
  Result<std::unique_ptr<Process>> Start(const ProcessRequest& request) override {
    auto process = std::make_unique<PosixProcess>();
    if (!process->output.Open() || !process->errors.Open() || !process->wake.Open() ||
        !SetNonBlocking(process->output.reader) || !SetNonBlocking(process->errors.reader) ||
        !SetNonBlocking(process->wake.reader) || !SetNonBlocking(process->wake.writer)) {
      return LastError(request);
    }
    const Result<pid_t> started =
        SpawnInGroup(request, process->output.writer.Get(), process->errors.writer.Get());
    if (!started) return started.GetError();
    process->pid = *started;
    // The child's copies are the only ones left, so that the streams end with it.
    process->output.writer.Close();
    process->errors.writer.Close();
    return std::unique_ptr<Process>(std::move(process));
  }
};

}  // namespace

ProcessLauncher& ProcessLauncher::Native() {
  static PosixProcessLauncher launcher;
  return launcher;
}

}  // namespace tarn
