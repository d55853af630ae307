#pragma once

#include <cerrno>
#include <string>
#include <utility>

#include "platform/Result.h"

namespace tarn::posix {

// Maps an errno value to an error code.
ErrorCode CodeOf(int number);
// Error with the code and the system's message for an errno value.
Error ErrorOf(int number, const std::string& place);
// Like ErrorOf(), for an operation that only reads: denied access does not mean that the file is
// read-only.
Error ReadErrorOf(int number, const std::string& place);
// Error that the OS has no message for.
Error ErrorOf(ErrorCode code, const std::string& text, const std::string& place);

// Repeats a system call while signals interrupt it. A negative result is an error with its reason
// in errno.
template <class Call>
auto Retry(const Call& call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// Owns an open file descriptor; -1 for none.
class Descriptor {
 public:
  explicit Descriptor(int openFile = -1) : number_(openFile) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);  // the other one closes the old descriptor
    return *this;
  }
  ~Descriptor() { (void)Close(); }

  int Get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }
  // Closes now. Returns false, with the reason in errno, if the OS reports a late write error.
  bool Close();

 private:
  int number_;
};

// Returns 16 random hexadecimal digits, unlikely to collide with those of another process.
std::string RandomDigits();

}  // namespace tarn::posix
