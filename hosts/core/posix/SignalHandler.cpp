#include "hosts/core/SignalHandler.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <iterator>
#include <system_error>

namespace tarn::host {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// One Ctrl-C may arrive twice if the parent process forwards it as well. A signal that follows the
// first one within this time is not counted as a second request.
constexpr std::int64_t kSameWish = 500;  // milliseconds

// The only state that the signal handler touches. The handler just writes to the pipe; a thread
// that reads from it does the work.
std::atomic<std::int64_t> g_firstInterrupt = 0;  // clock time in milliseconds; 0: none yet
std::atomic<int> g_pipeToWatcher = -1;
int g_pipeOfWatcher = -1;

std::int64_t Now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1'000'000;
}

void OnSignal(int) {
  const int savedError = errno;
  std::int64_t first = 0;
  if (!g_firstInterrupt.compare_exchange_strong(first, Now())) {
    if (Now() - first > kSameWish) _exit(SignalHandler::kExitCode);
    errno = savedError;
    return;
  }
  const char byte = 'i';
  [[maybe_unused]] const auto written = write(g_pipeToWatcher, &byte, 1);
  errno = savedError;
}

void SetHandlers(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int each : kSignals) sigaction(each, &action, nullptr);
}

void Watch(const std::function<void()>& onInterrupt, int output) {
  char byte = 0;
  for (;;) {
    // Only errors are polled for; poll() ignores a negative descriptor.
    pollfd watched[] = {{g_pipeOfWatcher, POLLIN, 0}, {output, 0, 0}};
    if (poll(watched, std::size(watched), -1) < 0) continue;
    if ((watched[1].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
      output = -1;
      if ((watched[1].revents & POLLNVAL) == 0) onInterrupt();
    }
    if (watched[0].revents == 0) continue;
    const auto count = read(g_pipeOfWatcher, &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count != 1 || byte == 'q') return;
    onInterrupt();
  }
}

}  // namespace

void IgnoreFailedWriteSignals() {
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
}

SignalHandler::SignalHandler(std::function<void()> onInterrupt, WatchedOutput watched) {
  const int output = watched == WatchedOutput::Standard ? STDOUT_FILENO : -1;
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "no pipe for interrupts");
  }
  g_firstInterrupt = 0;
  g_pipeOfWatcher = ends[0];
  g_pipeToWatcher = ends[1];
  try {
    watcher_ = std::thread([call = std::move(onInterrupt), output] { Watch(call, output); });
  } catch (const std::system_error& failure) {
    close(g_pipeToWatcher.exchange(-1));
    close(g_pipeOfWatcher);
    throw std::system_error(failure.code(), "A thread can't be started");
  }
  SetHandlers(OnSignal);
}

SignalHandler::~SignalHandler() {
  if (!watcher_.joinable()) return;
  SetHandlers(SIG_DFL);
  const char byte = 'q';
  [[maybe_unused]] const auto written = write(g_pipeToWatcher, &byte, 1);
  watcher_.join();
  close(g_pipeToWatcher.exchange(-1));
  close(g_pipeOfWatcher);
}

}  // namespace tarn::host
