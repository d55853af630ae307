#pragma once

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace tarn {

// Owns a file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int opened) : number_(opened) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { Close(); }

  int Get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }
  void Close() {
    if (number_ >= 0) close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

// Takes over a descriptor and moves it above the numbers of the three standard streams if
// necessary, which can happen in a process that has closed them. Returns an empty one, with errno
// set, if that fails, or if there was none: errno is that of the caller then.
inline Descriptor AboveStandard(int number) {
  Descriptor opened(number);
  if (number < 0 || number > STDERR_FILENO) return opened;
  return Descriptor(fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

// A pipe and a socket pair whose ends are close-on-exec. Open() returns false, with errno set, on
// error.
struct Pipe {
  Descriptor reader;
  Descriptor writer;

  bool Open() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    reader = AboveStandard(ends[0]);
    writer = AboveStandard(ends[1]);
    return reader && writer;
  }
};

struct SocketPair {
  Descriptor own;
  Descriptor other;

  bool Open() {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
    own = AboveStandard(ends[0]);
    other = AboveStandard(ends[1]);
    return own && other;
  }
};

}  // namespace tarn
