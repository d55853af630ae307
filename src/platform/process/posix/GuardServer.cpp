#include "platform/process/posix/GuardServer.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>

extern char** environ;

namespace tarn {

namespace {

// Actions and attributes for posix_spawn.
class SpawnPlan {
 public:
  explicit SpawnPlan(int channel) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
    Check(posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDWR, 0));
    Check(posix_spawn_file_actions_adddup2(&actions_, STDIN_FILENO, STDOUT_FILENO));
    Check(posix_spawn_file_actions_adddup2(&actions_, STDIN_FILENO, STDERR_FILENO));
    Check(posix_spawn_file_actions_adddup2(&actions_, channel, guard::kChannel));
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    Check(posix_spawnattr_setsigmask(&attributes_, &none));
    Check(posix_spawnattr_setsigdefault(&attributes_, &all));
    Check(posix_spawnattr_setpgroup(&attributes_, 0));
    Check(posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }

  // Returns 0 or an errno value.
  int Start(pid_t& pid, const std::string& program, char* const* arguments) const {
    if (failure_ != 0) return failure_;
    return posix_spawn(&pid, program.c_str(), &actions_, &attributes_, arguments, environ);
  }

 private:
  void Check(int result) {
    if (failure_ == 0) failure_ = result;
  }

  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
  int failure_ = 0;
};

bool IsGone(int failure) {
  return failure == EPIPE || failure == ECONNRESET || failure == ENOTCONN || failure == EBADF;
}

}  // namespace

GuardServer& GuardServer::Get() {
  static GuardServer server;
  return server;
}

GuardServer::~GuardServer() {
  Stop();
}

int GuardServer::Request(const std::string& program, const guard::Request& request,
                         std::span<const int> sent) {
  const std::lock_guard hold(lock_);
  int failure = owner_ == getpid() ? Send(request, sent) : EBADF;
  if (!IsGone(failure)) return failure;
  Stop();
  failure = Start(program);
  return failure == 0 ? Send(request, sent) : failure;
}

int GuardServer::Start(const std::string& program) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) return errno;
  socket_ = AboveStandard(ends[0]);
  // Above the number that it gets in the server; otherwise it would be closed there.
  const Descriptor other(ends[1]);
  const Descriptor high(fcntl(other.Get(), F_DUPFD_CLOEXEC, guard::kChannel + 1));
  if (!socket_ || !high) return errno;
  char name[] = "tarn-guard";
  char mode[] = "--serve";
  char* const arguments[] = {name, mode, nullptr};
  const int failure = SpawnPlan(high.Get()).Start(server_, program, arguments);
  if (failure == 0) owner_ = getpid();
  return failure;
}

int GuardServer::Send(const guard::Request& request, std::span<const int> sent) const {
  iovec packet{const_cast<guard::Request*>(&request), sizeof request};
  alignas(cmsghdr) char
      control[CMSG_SPACE((guard::kSentCount + guard::kMostPassed) * sizeof(int))] = {};
  msghdr message{};
  message.msg_iov = &packet;
  message.msg_iovlen = 1;
  message.msg_control = control;
  message.msg_controllen = CMSG_SPACE(sent.size_bytes());
  cmsghdr* const head = CMSG_FIRSTHDR(&message);
  head->cmsg_level = SOL_SOCKET;
  head->cmsg_type = SCM_RIGHTS;
  head->cmsg_len = CMSG_LEN(sent.size_bytes());
  std::memcpy(CMSG_DATA(head), sent.data(), sent.size_bytes());
  ssize_t count = -1;
  do {
    count = sendmsg(socket_.Get(), &message, MSG_NOSIGNAL);
  } while (count < 0 && errno == EINTR);
  return count < 0 ? errno : 0;
}

// Ends the server, even if another process has a copy of the socket.
void GuardServer::Stop() {
  const bool isOwn = owner_ == getpid();
  if (isOwn) shutdown(socket_.Get(), SHUT_RDWR);
  socket_.Close();
  if (isOwn) {
    while (waitpid(server_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
  owner_ = -1;
}

}  // namespace tarn
