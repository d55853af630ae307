#include "hosts/desktop/QuitSignals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <atomic>
#include <cerrno>
#include <utility>

namespace tarn::host {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// A handler can reach nothing else, and may only write there.
std::atomic<int> g_pipe = -1;

void OnSignal(int) {
  const int savedError = errno;
  const char byte = 'q';
  [[maybe_unused]] const auto written = write(g_pipe, &byte, 1);
  errno = savedError;
}

void SetHandlers(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  // The second of a kind finds the usual way to end.
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
  for (const int each : kSignals) sigaction(each, &action, nullptr);
}

}  // namespace

QuitSignals::QuitSignals(std::function<void()> onQuit) {
  if (pipe2(ends, O_CLOEXEC) != 0) return;  // requests then end the process as they always did
  auto* const notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this, quit = std::move(onQuit)] {
    char byte = 0;
    if (read(ends[0], &byte, 1) == 1) quit();
  });
  g_pipe = ends[1];
  SetHandlers(OnSignal);
}

QuitSignals::~QuitSignals() {
  if (ends[0] < 0) return;
  SetHandlers(SIG_DFL);
  g_pipe = -1;
  for (const int end : ends) close(end);
}

}  // namespace tarn::host
