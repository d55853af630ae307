#include "hosts/core/Terminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tarn::host {

void ReserveStandardStreams() {
  // Opened for the other direction. A new descriptor is the lowest one that is free.
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) >= 0) continue;
    (void)open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

bool IsInputTerminal() {
  return isatty(STDIN_FILENO) == 1;
}

bool IsOutputTerminal() {
  return isatty(STDOUT_FILENO) == 1;
}

std::optional<int> TerminalWidth() {
  winsize size{};
  const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? std::optional<int>(size.ws_col) : std::nullopt;
}

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
  return {argv, argv + argc};
}

}  // namespace tarn::host
