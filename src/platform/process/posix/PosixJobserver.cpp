#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "platform/process/Jobserver.h"
#include "platform/process/posix/Descriptor.h"

namespace tarn {

namespace {

// Descriptors that are passed to tools have numbers from here on, above those that tarn-guard and
// scripts use.
constexpr int kLeastPassed = 10;

Error ToError(const std::string& text, const std::string& place) {
  return {ErrorCode::Io, text, place};
}

// Returns true if the descriptor is one end of a pipe that this process has inherited; its own ones
// are close-on-exec.
bool IsInheritedPipe(int number, int forbiddenMode, struct stat& status) {
  const int flags = number < 0 ? -1 : fcntl(number, F_GETFD);
  const int mode = flags < 0 ? -1 : fcntl(number, F_GETFL);
  return mode >= 0 && (flags & FD_CLOEXEC) == 0 && (mode & O_ACCMODE) != forbiddenMode &&
         fstat(number, &status) == 0 && S_ISFIFO(status.st_mode);
}

// Opens the reading end of a pipe again. Only an open file of its own can be made non-blocking:
// other programs that use the pipe may rely on waiting when they read from it.
Descriptor OpenAgain(int reader) {
  const std::string path = "/proc/self/fd/" + std::to_string(reader);
  return Descriptor(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

Descriptor ForTools(int number) {
  return Descriptor(fcntl(number, F_DUPFD_CLOEXEC, kLeastPassed));
}

class PosixJobserver final : public Jobserver {
 public:
  ~PosixJobserver() override {
    while (!held_.empty()) Return();
  }

  Status JoinNamed(const std::string& path) {
    // Without a wait for another program that opens it, and without its end.
    reader_ = Descriptor(open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!reader_) return ToError(path + ": " + std::strerror(errno), path);
    struct stat status {};
    if (fstat(reader_.Get(), &status) != 0 || !S_ISFIFO(status.st_mode)) {
      return ToError(path + " is not a named pipe", path);
    }
    writer_ = ForTools(reader_.Get());
    address_.path = path;
    return Prepare();
  }

  Status JoinPipe(int reader, int writer) {
    struct stat one {};
    struct stat other {};
    if (!IsInheritedPipe(reader, O_WRONLY, one) || !IsInheritedPipe(writer, O_RDONLY, other) ||
        one.st_ino != other.st_ino || one.st_dev != other.st_dev) {
      return ToError("its pipe isn't open; start the recipe's line with +", {});
    }
    return OpenPipe(reader, writer);
  }

  Status CreatePipe(int tokens) {
    Pipe pipe;
    if (!pipe.Open()) return ToError(std::strerror(errno), {});
    tokens_ = tokens;
    if (const Status opened = OpenPipe(pipe.reader.Get(), pipe.writer.Get()); !opened) {
      return opened;
    }
    for (int i = 0; i < tokens_; ++i) Write('+');
    return {};
  }

  bool Take() override {
    char token = 0;
    ssize_t count = -1;
    do {
      count = read(reader_.Get(), &token, 1);
    } while (count < 0 && errno == EINTR);
    if (count == 1) held_.push_back(token);
    if (count == 0 || (count < 0 && errno != EAGAIN)) isBroken_ = true;
    return count == 1;
  }

  // Writes the byte that was read: make uses different ones.
  void Return() override {
    Write(held_.back());
    held_.pop_back();
  }

  int GetHeld() const override { return static_cast<int>(held_.size()); }

  void Refill() override {
    int available = 0;
    const bool isKnown = tokens_ > 0 && ioctl(reader_.Get(), FIONREAD, &available) == 0;
    if (!isKnown || available == tokens_) return;
    while (Take()) {
    }
    held_.clear();
    for (int i = 0; i < tokens_; ++i) Write('+');
  }

  void Wait(std::chrono::milliseconds most) override {
    std::array<pollfd, 2> watched{
        {{isBroken_ ? -1 : reader_.Get(), POLLIN, 0}, {wake_.reader.Get(), POLLIN, 0}}};
    if (poll(watched.data(), watched.size(), static_cast<int>(most.count())) <= 0) return;
    std::array<char, 64> marks;
    if (watched[1].revents == 0) return;
    [[maybe_unused]] const auto count = read(wake_.reader.Get(), marks.data(), marks.size());
  }

  void Wake() override {
    const char mark = 0;
    // If the pipe is full, the waiting thread wakes up anyway.
    [[maybe_unused]] const auto count = write(wake_.writer.Get(), &mark, 1);
  }

  JobserverAddress GetAddress() const override { return address_; }

 private:
  Status OpenPipe(int reader, int writer) {
    reader_ = OpenAgain(reader);
    toolReader_ = ForTools(reader);
    writer_ = ForTools(writer);
    if (!reader_ || !toolReader_ || !writer_) return ToError(std::strerror(errno), {});
    address_.reader = toolReader_.Get();
    address_.writer = writer_.Get();
    return Prepare();
  }

  Status Prepare() {
    if (writer_ && wake_.Open() && fcntl(wake_.reader.Get(), F_SETFL, O_NONBLOCK) == 0 &&
        fcntl(wake_.writer.Get(), F_SETFL, O_NONBLOCK) == 0) {
      return {};
    }
    return ToError(std::strerror(errno), {});
  }

  void Write(char token) {
    for (;;) {
      if (write(writer_.Get(), &token, 1) == 1) return;
      if (errno == EINTR) continue;
      if (errno != EAGAIN) return;
      pollfd watched{writer_.Get(), POLLOUT, 0};
      poll(&watched, 1, -1);
    }
  }

  Descriptor reader_;  // non-blocking
  Descriptor toolReader_;
  Descriptor writer_;
  JobserverAddress address_;
  Pipe wake_;
  std::atomic<bool> isBroken_ = false;  // there will be no more tokens
  std::vector<char> held_;
  int tokens_ = 0;  // of a created one
};

}  // namespace

Result<std::unique_ptr<Jobserver>> Jobserver::Join(const JobserverAddress& address) {
  auto joined = std::make_unique<PosixJobserver>();
  const Status done = address.path.empty() ? joined->JoinPipe(address.reader, address.writer)
                                           : joined->JoinNamed(address.path);
  if (!done) return done.GetError();
  return std::unique_ptr<Jobserver>(std::move(joined));
}

Result<std::unique_ptr<Jobserver>> Jobserver::Create(int tokens) {
  auto created = std::make_unique<PosixJobserver>();
  if (const Status done = created->CreatePipe(tokens); !done) return done.GetError();
  return std::unique_ptr<Jobserver>(std::move(created));
}

}  // namespace tarn
