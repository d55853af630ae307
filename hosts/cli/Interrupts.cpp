#include "hosts/cli/Interrupts.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

#include "hosts/cli/Invocation.h"

namespace tarn::host {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// A signal handler can reach nothing but these. It may only write to the pipe; a thread that reads
// there does the rest.
std::atomic<int> g_interruptCount = 0;
std::atomic<int> g_pipeToWatcher = -1;
int g_pipeOfWatcher = -1;

void OnSignal(int) {
  const int savedError = errno;
  if (g_interruptCount.fetch_add(1) > 0) _exit(kExitInterrupted);
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

void Watch(const std::function<void()>& onInterrupt) {
  char byte = 0;
  for (;;) {
    const auto count = read(g_pipeOfWatcher, &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count != 1 || byte == 'q') return;
    onInterrupt();
  }
}

}  // namespace

Interrupts::Interrupts(std::function<void()> onInterrupt) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) return;  // interrupts then end the process as they always did
  g_interruptCount = 0;
  g_pipeOfWatcher = ends[0];
  g_pipeToWatcher = ends[1];
  watcher = std::thread([call = std::move(onInterrupt)] { Watch(call); });
  SetHandlers(OnSignal);
}

Interrupts::~Interrupts() {
  if (!watcher.joinable()) return;
  SetHandlers(SIG_DFL);
  const char byte = 'q';
  [[maybe_unused]] const auto written = write(g_pipeToWatcher, &byte, 1);
  watcher.join();
  close(g_pipeToWatcher.exchange(-1));
  close(g_pipeOfWatcher);
}

bool Interrupts::Seen() const {
  return g_interruptCount > 0;
}

}  // namespace tarn::host
