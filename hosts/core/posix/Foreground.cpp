#include "hosts/core/Foreground.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstring>

extern char** environ;

namespace tarn::host {

namespace {

// Ignores a signal for some time.
class IgnoredSignal {
 public:
  explicit IgnoredSignal(int signalNumber) : signal_(signalNumber) {
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(signal_, &ignore, &before_);
  }
  IgnoredSignal(const IgnoredSignal&) = delete;
  IgnoredSignal& operator=(const IgnoredSignal&) = delete;
  ~IgnoredSignal() { sigaction(signal_, &before_, nullptr); }

 private:
  int signal_;
  struct sigaction before_ {};
};

int Spawn(const ToolCommand& command, pid_t& child) {
  std::vector<char*> words{const_cast<char*>(command.program.c_str())};
  for (const std::string& each : command.arguments)
    words.push_back(const_cast<char*>(each.c_str()));
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  if (!command.folder.empty()) {
    posix_spawn_file_actions_addchdir_np(&actions, command.folder.c_str());
  }
  sigset_t usual;
  sigfillset(&usual);
  posix_spawnattr_setsigdefault(&attributes, &usual);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  const int error =
      posix_spawnp(&child, command.program.c_str(), &actions, &attributes, words.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

}  // namespace

Result<int> RunInForeground(const ToolCommand& command) {
  const IgnoredSignal interrupt(SIGINT);
  const IgnoredSignal quit(SIGQUIT);
  pid_t child = 0;
  if (const int error = Spawn(command, child); error != 0) {
    return Error{error == ENOENT ? ErrorCode::NotFound : ErrorCode::Io, std::strerror(error),
                 command.program};
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace tarn::host
