// tarn-guard --serve: starts tools, and terminates everything that a tool has started when it is
// ordered to or when the program that uses the tool is gone for any reason.
//
// Descriptor 3 is a packet socket to that program. For each request (see GuardChannel.h) the server
// forks, which costs much less than to execute a guard for each tool. The child is the guard of
// that tool. Its descriptor 3 is the tool's channel, a stream socket: the guard writes two values
// of type int, 0 or the errno value of its failure after the start, and the tool's wait status at
// the end. It reads one-byte orders. The end of the channel means kill or, for a tool that may
// outlive the program, release the tool. The server ends with its socket; guards keep running.
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

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/process/posix/GuardChannel.h"

namespace {

using tarn::guard::kChannel;
using tarn::guard::kOrderKill;
using tarn::guard::Request;

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

// What is to be executed. The pointers are arrays terminated by null.
struct Program {
  char* path = nullptr;
  char** arguments = nullptr;
  char** environment = nullptr;
  bool keepsInputOpen = false;
};

void Send(int number, int channel = kChannel) {
  // An error means that the reader is gone.
  [[maybe_unused]] const auto sent = send(channel, &number, sizeof number, MSG_NOSIGNAL);
}

// Replaces the standard input by a pipe whose other end this process holds, so that it never ends.
bool OpenEndlessInput() {
  int ends[2];
  if (pipe2(ends, 0) != 0) return false;
  const bool isReplaced = dup2(ends[0], STDIN_FILENO) >= 0;
  close(ends[0]);
  return isReplaced;
}

// Runs in the child between vfork() and exec(), so in the memory of the guard. On error writes an
// errno value into the pipe. Never returns.
[[noreturn]] void BecomeTool(const Program& program, bool diesWithGuard, pid_t guard,
                             int failurePipe) {
  setpgid(0, 0);
  if (diesWithGuard) prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != guard) _exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  if (!program.keepsInputOpen || OpenEndlessInput()) {
    execve(program.path, program.arguments, program.environment);
  }
  const int failure = errno;
  [[maybe_unused]] const auto written = write(failurePipe, &failure, sizeof failure);
  _exit(127);
}

// Returns 0 or an errno value. Unlike fork(), vfork() copies no memory. Waits for the end of file
// on a pipe, which means that the child has executed the program: where vfork() is the same as
// fork(), for example under the thread sanitizer, its return doesn't mean that.
int Start(Tool& tool, const Program& program, bool diesWithGuard) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return errno;
  const pid_t guard = getpid();
  const pid_t child = vfork();
  const int problem = child < 0 ? errno : 0;
  if (child == 0) BecomeTool(program, diesWithGuard, guard, ends[1]);
  if (problem != 0) {
    for (const int end : ends) close(end);
    return problem;
  }
  tool.pid = child;
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

// Returns a descriptor that becomes readable when a child ends, or -1 on error.
int WatchChildren() {
  sigset_t childEnds;
  sigemptyset(&childEnds);
  sigaddset(&childEnds, SIGCHLD);
  sigprocmask(SIG_BLOCK, &childEnds, nullptr);
  return signalfd(-1, &childEnds, SFD_CLOEXEC | SFD_NONBLOCK);
}

struct Received {
  Request request;
  int descriptors[tarn::guard::kSentCount + tarn::guard::kMostPassed] = {};
  int count = 0;

  int Get(tarn::guard::Sent which) const { return descriptors[which]; }
  void Close() {
    for (int i = 0; i < count; ++i) close(descriptors[i]);
  }
};

// Returns false at the end of the socket.
bool Receive(Received& received) {
  iovec packet{&received.request, sizeof received.request};
  alignas(cmsghdr) char control[CMSG_SPACE(sizeof received.descriptors)];
  msghdr message{};
  message.msg_iov = &packet;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = sizeof control;
  ssize_t count = -1;
  do {
    count = recvmsg(kChannel, &message, MSG_CMSG_CLOEXEC);
  } while (count < 0 && errno == EINTR);
  if (count <= 0) return false;
  for (cmsghdr* each = CMSG_FIRSTHDR(&message); each != nullptr;
       each = CMSG_NXTHDR(&message, each)) {
    if (each->cmsg_level != SOL_SOCKET || each->cmsg_type != SCM_RIGHTS) continue;
    const std::size_t size = each->cmsg_len - CMSG_LEN(0);
    std::memcpy(received.descriptors, CMSG_DATA(each), size);
    received.count = static_cast<int>(size / sizeof(int));
  }
  // Some are missing if this process may not open that many.
  const bool isWhole =
      count == sizeof received.request &&
      received.count == tarn::guard::kSentCount + static_cast<int>(received.request.passedCount);
  if (isWhole) return true;
  if (received.count > 0) Send(EMFILE, received.Get(tarn::guard::kSentChannel));
  received.Close();
  received.count = 0;
  return true;
}

// Gives the received descriptors the numbers that the tool expects. Returns 0 or an errno value.
// `channel` is always the present number of the channel.
int PutInPlace(const Received& received, int& channel) {
  using namespace tarn::guard;
  const Request& request = received.request;
  int highest = kChannel;
  for (unsigned i = 0; i < request.passedCount; ++i) {
    highest = std::max(highest, request.passed[i]);
  }
  // First out of the way, since one may have the number of another.
  int moved[kSentCount + kMostPassed];
  for (int i = 0; i < received.count; ++i) {
    moved[i] = fcntl(received.descriptors[i], F_DUPFD_CLOEXEC, highest + 1);
    if (moved[i] < 0) return errno;
    close(received.descriptors[i]);
    channel = moved[kSentChannel];
  }
  const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
  const bool isPlaced =
      fchdir(moved[kSentFolder]) == 0 && input >= 0 && dup2(input, STDIN_FILENO) >= 0 &&
      dup2(moved[kSentOutput], STDOUT_FILENO) >= 0 && dup2(moved[kSentErrors], STDERR_FILENO) >= 0;
  if (!isPlaced) return errno;
  if (input > STDERR_FILENO) close(input);
  for (unsigned i = 0; i < request.passedCount; ++i) {
    if (dup2(moved[kSentCount + i], request.passed[i]) < 0) return errno;
  }
  if (dup3(channel, kChannel, O_CLOEXEC) < 0) return errno;
  channel = kChannel;
  for (int i = 0; i < received.count; ++i) close(moved[i]);
  return 0;
}

// Reads the strings of the program from the channel. Returns false if the sender is gone or memory
// is exhausted. The memory is never freed.
bool ReadProgram(const Request& request, int channel, Program& program) {
  const std::size_t count = 1 + request.argumentCount + request.variableCount;
  auto* const text = static_cast<char*>(std::malloc(request.textSize));
  auto** const pointers = static_cast<char**>(std::calloc(count + 2, sizeof(char*)));
  if (text == nullptr || pointers == nullptr) return false;
  for (std::size_t read = 0; read < request.textSize;) {
    const ssize_t got = recv(channel, text + read, request.textSize - read, MSG_WAITALL);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    read += static_cast<std::size_t>(got);
  }
  program = {text, pointers, pointers + request.argumentCount + 1, request.keepsInputOpen};
  char* next = text + std::strlen(text) + 1;
  for (std::size_t i = 1; i < count; ++i) {
    const bool isArgument = i <= request.argumentCount;
    pointers[isArgument ? i - 1 : i] = next;
    next += std::strlen(next) + 1;
  }
  return true;
}

// Starts a tool and attends it until its end.
int Guard(const Received& received) {
  setpgid(0, 0);
  Program program;
  int channel = received.Get(tarn::guard::kSentChannel);
  if (!ReadProgram(received.request, channel, program)) return Send(ENOMEM, channel), 1;
  const int misplaced = PutInPlace(received, channel);
  if (misplaced != 0) return Send(misplaced, channel), 1;
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  const int signals = WatchChildren();
  if (signals < 0) return Send(errno), 1;
  Tool started;
  const bool mayOutlive = received.request.mayOutlive;
  const int failure = Start(started, program, !mayOutlive);
  Send(failure);
  if (failure != 0) return 1;
  // Release the tool's streams, so that they end with the tool.
  dup2(STDIN_FILENO, STDOUT_FILENO);
  dup2(STDIN_FILENO, STDERR_FILENO);
  Attend(started, signals, mayOutlive);
  Send(started.status);
  return 0;
}

void CloseInherited() {
  if (close_range(kChannel + 1, ~0U, 0) == 0) return;
  constexpr long kMost = 1 << 16;
  const int end = static_cast<int>(std::min(sysconf(_SC_OPEN_MAX), kMost));
  for (int each = kChannel + 1; each < end; ++each) close(each);
}

int Serve() {
  // Keep nothing in use that belongs to the program: neither descriptors nor its current folder.
  CloseInherited();
  if (chdir("/") != 0) return 1;
  fcntl(kChannel, F_SETFD, FD_CLOEXEC);
  const int signals = WatchChildren();
  if (signals < 0) return 1;
  for (;;) {
    pollfd watched[] = {{kChannel, POLLIN, 0}, {signals, POLLIN, 0}};
    poll(watched, 2, -1);
    signalfd_siginfo info;
    while (read(signals, &info, sizeof info) > 0) {
    }
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
    if (watched[0].revents == 0) continue;
    Received received;
    if (!Receive(received)) return 0;
    if (received.count == 0) continue;
    const pid_t guard = fork();
    if (guard == 0) {
      close(signals);
      return Guard(received);
    }
    if (guard < 0) Send(errno, received.Get(tarn::guard::kSentChannel));
    received.Close();
  }
}

}  // namespace

int main(int count, char** words) {
  if (count == 2 && std::strcmp(words[1], tarn::guard::kServe) == 0) return Serve();
  std::fputs("tarn-guard starts tools for Tarn and is not meant to be run by itself.\n", stderr);
  return 2;
}
