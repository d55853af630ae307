// tarn-guard: starts one tool and terminates everything that the tool has started, when it is
// ordered to or when the program that uses the tool is gone for any reason.
//
//   tarn-guard [--outlive] PROGRAM NAME [ARGUMENT...]
//
// Descriptor 3 is a stream socket to that program. The guard writes two values of type int: after
// the start, 0 or the errno value of its failure; at the end, the tool's wait status. It reads
// one-byte orders. The end of the socket means kill or, for a tool that may outlive the program,
// release the tool.
//
// The guard is the subreaper of its descendants: it becomes the parent of each process whose own
// parent has ended, even if that has left the tool's group or session. It kills only its own
// children, generation after generation. A child's process id cannot be reused until the guard has
// waited for it, so a signal never reaches an unrelated process.
//
// If a tool ends by itself, its descendants keep running: one of them may be a service that later
// tools use as well.

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/process/posix/GuardChannel.h"

namespace {

using tarn::guard::kChannel;
using tarn::guard::kOrderKill;
using tarn::guard::kOutlive;

// Limit for children that cannot be killed, such as those of another user.
constexpr int kKillTime = 1000;  // milliseconds
constexpr int kKillPause = 5;    // milliseconds between two generations

struct Tool {
  pid_t pid = -1;
  bool hasEnded = false;
  int status = SIGKILL;  // as returned by waitpid()
};

long Now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
}

void Send(int number) {
  // An error means that the reader is gone.
  [[maybe_unused]] const auto sent = send(kChannel, &number, sizeof number, MSG_NOSIGNAL);
}

// Runs in the child between fork() and exec(). On error writes an errno value into the pipe. Never
// returns.
[[noreturn]] void BecomeTool(char** words, bool diesWithGuard, pid_t guard, int failurePipe) {
  setpgid(0, 0);
  if (diesWithGuard) prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != guard) _exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  execv(words[0], words + 1);
  const int failure = errno;
  [[maybe_unused]] const auto written = write(failurePipe, &failure, sizeof failure);
  _exit(127);
}

// Returns 0 or an errno value.
int Start(Tool& tool, char** words, bool diesWithGuard) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return errno;
  const pid_t guard = getpid();
  tool.pid = fork();
  if (tool.pid < 0) return errno;
  if (tool.pid == 0) BecomeTool(words, diesWithGuard, guard, ends[1]);
  close(ends[1]);
  int failure = 0;
  ssize_t count = -1;
  do {
    count = read(ends[0], &failure, sizeof failure);
  } while (count < 0 && errno == EINTR);
  close(ends[0]);
  return count == sizeof failure ? failure : 0;
}

// Calls `act` with the process id of each child.
template <typename Action>
void ForEachChild(Action act) {
  DIR* const processes = opendir("/proc");
  if (processes == nullptr) return;
  while (const dirent* entry = readdir(processes)) {
    if (std::isdigit(static_cast<unsigned char>(entry->d_name[0])) == 0) continue;
    char path[300];
    std::snprintf(path, sizeof path, "/proc/%s/stat", entry->d_name);
    std::FILE* const file = std::fopen(path, "re");
    if (file == nullptr) continue;
    char text[512];
    const std::size_t size = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    text[size] = '\0';
    // "NUMBER (NAME) STATE PARENT ...", where the name may contain any character.
    const char* const name = std::strrchr(text, ')');
    int parent = 0;
    if (name == nullptr || std::sscanf(name + 1, " %*c %d", &parent) != 1) continue;
    if (parent == getpid()) act(static_cast<pid_t>(std::atoi(entry->d_name)));
  }
  closedir(processes);
}

// Collects the status of ended children without blocking. Returns whether there are other children.
bool Reap(Tool& tool) {
  for (;;) {
    int status = 0;
    const pid_t ended = waitpid(-1, &status, WNOHANG);
    if (ended <= 0) return ended == 0;
    if (ended != tool.pid) continue;
    tool.hasEnded = true;
    tool.status = status;
  }
}

void RequestEnd(const Tool& tool) {
  // The group id cannot be reused before the tool has been waited for.
  if (!tool.hasEnded) {
    kill(-tool.pid, SIGTERM);
    kill(-tool.pid, SIGCONT);  // a stopped process would not handle the first
    return;
  }
  ForEachChild([](pid_t child) {
    kill(child, SIGTERM);
    kill(child, SIGCONT);
  });
}

void KillChildren(const Tool& tool) {
  if (!tool.hasEnded) kill(-tool.pid, SIGKILL);
  ForEachChild([](pid_t child) { kill(child, SIGKILL); });
}

enum class Wish { None, End, Kill, LetGo };

Wish ReadChannel(bool mayOutlive) {
  char order = 0;
  const ssize_t count = recv(kChannel, &order, 1, MSG_DONTWAIT);
  if (count > 0) return order == kOrderKill ? Wish::Kill : Wish::End;
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return Wish::None;
  return mayOutlive ? Wish::LetGo : Wish::Kill;
}

void Attend(Tool& tool, int childSignals, bool mayOutlive) {
  bool isStopping = false;
  long killedSince = 0;  // 0: not yet
  for (;;) {
    const bool isKilling = killedSince != 0;
    pollfd watched[] = {{isKilling ? -1 : kChannel, POLLIN, 0}, {childSignals, POLLIN, 0}};
    poll(watched, 2, isKilling ? kKillPause : -1);
    signalfd_siginfo info;
    while (read(childSignals, &info, sizeof info) > 0) {
    }
    const bool hasChildren = Reap(tool);
    if (tool.hasEnded && (!hasChildren || (!isStopping && !isKilling))) return;
    const Wish wish = watched[0].revents == 0 ? Wish::None : ReadChannel(mayOutlive);
    if (wish == Wish::LetGo) return;
    if (wish == Wish::End) {
      isStopping = true;
      RequestEnd(tool);
    }
    if (wish == Wish::Kill) killedSince = Now();
    if (killedSince == 0) continue;
    if (Now() - killedSince > kKillTime) return;
    KillChildren(tool);
  }
}

}  // namespace

int main(int count, char** words) {
  const bool mayOutlive = count > 1 && std::strcmp(words[1], kOutlive) == 0;
  char** const tool = words + (mayOutlive ? 2 : 1);
  if (words + count < tool + 2) {
    std::fputs("tarn-guard starts tools for Tarn and is not meant to be run by itself.\n", stderr);
    return 2;
  }
  fcntl(kChannel, F_SETFD, FD_CLOEXEC);
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  sigset_t childEnds;
  sigemptyset(&childEnds);
  sigaddset(&childEnds, SIGCHLD);
  sigprocmask(SIG_BLOCK, &childEnds, nullptr);
  const int signals = signalfd(-1, &childEnds, SFD_CLOEXEC | SFD_NONBLOCK);
  if (signals < 0) return Send(errno), 1;
  Tool started;
  const int failure = Start(started, tool, !mayOutlive);
  Send(failure);
  if (failure != 0) return 1;
  // Release the tool's streams, so that they end with the tool.
  dup2(STDIN_FILENO, STDOUT_FILENO);
  dup2(STDIN_FILENO, STDERR_FILENO);
  Attend(started, signals, mayOutlive);
  Send(started.status);
  return 0;
}
