#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
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
#include "platform/process/posix/GuardChannel.h"
#include "platform/process/posix/Spawn.h"

// The waiting thread does all the work: it reads both streams, is notified of the program's end by
// the guard (see ToolGuard.cpp) and of a stop through a pipe, and orders the guard to kill what is
// left after the grace period of a stop. So no helper thread can outlive a process object.
namespace tarn {

namespace {

using Clock = std::chrono::steady_clock;

// Time that a descendant may keep the pipes open after the program's end.
constexpr std::chrono::milliseconds kGraceForGrandchildren{250};
// Amount that a pipe may still contain when its time is over.
constexpr std::size_t kPipeCapacity = 65536;

ProcessExit ToExit(int status) {
  if (WIFSIGNALED(status)) return {128 + WTERMSIG(status), true};
  return {WEXITSTATUS(status), false};
}

class PosixProcess final : public Process {
 public:
  Pipe output;
  Pipe errors;
  Pipe wake;
  Descriptor channel;  // to the guard; empty before the start

  ~PosixProcess() override {
    if (!channel || exit_) return;
    Kill();
    Reap();
  }

  ProcessExit WaitWithOutput(const OutputHandler& onOutput) override {
    if (exit_) return *exit_;
    std::optional<Clock::time_point> ended;
    while (!IsOver(ended)) {
      PollOnce(ended.has_value(), UntilNextStep(ended), onOutput);
      if (!ended && hasEnded_) ended = Clock::now();
      KillAtDeadline();
    }
    // Read what was written in time, even if the streams don't end.
    ReadRest(output.reader, false, onOutput);
    ReadRest(errors.reader, true, onOutput);
    return Reap();
  }

  void Stop(std::chrono::milliseconds grace) override {
    {
      const std::lock_guard hold(lock_);
      if (exit_) return;
      const auto deadline = Clock::now() + std::clamp(grace, std::chrono::milliseconds(0),
                                                      std::chrono::milliseconds(86400000));
      stopDeadline_ = stopDeadline_ ? std::min(*stopDeadline_, deadline) : deadline;
      // Fails if the guard has ended; then there is nothing left to stop.
      Send(guard::kOrderEnd);
    }
    const char mark = 0;
    // If the pipe is full, the waiting thread wakes up anyway.
    [[maybe_unused]] const auto written = write(wake.writer.Get(), &mark, 1);
  }

 private:
  // True if the program has ended, and both streams have ended or their grace period has passed.
  // After a stop the guard ends last, so output during the grace period is still read.
  bool IsOver(std::optional<Clock::time_point> ended) const {
    if (!ended) return false;
    if (!output.reader && !errors.reader) return true;
    return Clock::now() >= *ended + kGraceForGrandchildren;
  }

  // Timeout for poll() in milliseconds; -1 for none.
  int UntilNextStep(std::optional<Clock::time_point> ended) {
    std::optional<Clock::time_point> next;
    if (ended) {
      next = *ended + kGraceForGrandchildren;
    } else if (!isKilled_) {
      next = StopDeadline();
    }
    if (!next) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
  }

  void PollOnce(bool isEnded, int milliseconds, const OutputHandler& onOutput) {
    // poll() ignores a negative descriptor.
    std::array<pollfd, 4> watched{{{output.reader.Get(), POLLIN, 0},
                                   {errors.reader.Get(), POLLIN, 0},
                                   {wake.reader.Get(), POLLIN, 0},
                                   {isEnded ? -1 : channel.Get(), POLLIN, 0}}};
    if (poll(watched.data(), watched.size(), milliseconds) <= 0) return;
    if (watched[0].revents != 0) ReadOnce(output.reader, false, onOutput);
    if (watched[1].revents != 0) ReadOnce(errors.reader, true, onOutput);
    if (watched[2].revents != 0) {
      std::array<char, 64> marks{};
      [[maybe_unused]] const auto read = ::read(wake.reader.Get(), marks.data(), marks.size());
    }
    if (watched[3].revents != 0) ReadEnd();
  }

  // Returns the number of bytes read; closes the stream at its end.
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

  // If the guard itself is killed, the program dies with it and no status arrives.
  void ReadEnd() {
    int number = 0;
    const ssize_t count = recv(channel.Get(), &number, sizeof number, MSG_WAITALL);
    if (count < 0 && errno == EINTR) return;
    if (count == sizeof number) status_ = number;
    hasEnded_ = true;
  }

  std::optional<Clock::time_point> StopDeadline() {
    const std::lock_guard hold(lock_);
    return stopDeadline_;
  }

  void KillAtDeadline() {
    const auto deadline = StopDeadline();
    if (deadline && !isKilled_ && Clock::now() >= *deadline) Kill();
  }

  void Kill() {
    isKilled_ = true;
    Send(guard::kOrderKill);
  }

  void Send(char order) {
    [[maybe_unused]] const auto sent = send(channel.Get(), &order, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
  }

  ProcessExit Reap() {
    // Without the lock, so that Stop() never blocks.
    while (!hasEnded_) ReadEnd();
    const std::lock_guard hold(lock_);
    exit_ = ToExit(status_);
    return *exit_;
  }

  std::mutex lock_;  // guards the next two
  std::optional<ProcessExit> exit_;
  std::optional<Clock::time_point> stopDeadline_;
  // For the waiting thread only.
  bool isKilled_ = false;
  bool hasEnded_ = false;
  int status_ = SIGKILL;  // as returned by waitpid()
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
    SocketPair sockets;
    if (!sockets.Open() || !process->output.Open() || !process->errors.Open() ||
        !process->wake.Open() || !SetNonBlocking(process->output.reader) ||
        !SetNonBlocking(process->errors.reader) || !SetNonBlocking(process->wake.reader) ||
        !SetNonBlocking(process->wake.writer)) {
      return LastError(request);
    }
    const Status started =
        SpawnGuarded(request, process->output.writer.Get(), process->errors.writer.Get(),
                     std::move(sockets.other), sockets.own.Get());
    if (!started) return started.GetError();
    process->channel = std::move(sockets.own);
    // Leave only the child's copies open, so that the streams end with the child.
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
