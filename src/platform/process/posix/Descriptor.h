#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace tarn {

// A file descriptor that is closed with its owner.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int opened) : number(opened) {}
  Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number, other.number);
    return *this;
  }
  ~Descriptor() { Close(); }

  int Get() const { return number; }
  explicit operator bool() const { return number >= 0; }
  void Close() {
    if (number >= 0) close(std::exchange(number, -1));
  }

 private:
  int number = -1;
};

struct Pipe {
  Descriptor reader;
  Descriptor writer;

  // Neither end goes to a child by itself, and neither has one of the numbers of the three
  // standard streams, even in a process that closed them. False with errno set.
  bool Open() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return false;
    reader = AboveStandard(ends[0]);
    writer = AboveStandard(ends[1]);
    return reader && writer;
  }

 private:
  static Descriptor AboveStandard(int number) {
    Descriptor opened(number);
    if (number > STDERR_FILENO) return opened;
    return Descriptor(fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  }
};

}  // namespace tarn
