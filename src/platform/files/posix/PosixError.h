#pragma once

#include <cerrno>
#include <string>
#include <utility>

#include "platform/Result.h"

namespace tarn::posix {

// What an error number of the machine means to callers.
ErrorCode CodeOf(int number);
// The same with the machine's own words for it.
Error ErrorOf(int number, const std::string& place);
// For an operation that only reads: a refused access is no hint at a read-only file.
Error ReadErrorOf(int number, const std::string& place);
// A failure that the machine has no words for.
Error ErrorOf(ErrorCode code, const std::string& text, const std::string& place);

// Repeats a call for as long as signals interrupt it. A negative result is a failure with
// its reason in errno.
template <class Call>
auto Retry(const Call& call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// An open file of the machine, closed at the end. -1 is none.
class Descriptor {
 public:
  explicit Descriptor(int openFile = -1) : number(openFile) {}
  Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number, other.number);  // the other one closes what this one had
    return *this;
  }
  ~Descriptor() { (void)Close(); }

  int Get() const { return number; }
  explicit operator bool() const { return number >= 0; }
  // Closes now; false, with the reason in errno, when the machine reports a late write failure.
  bool Close();

 private:
  int number;
};

// 16 hexadecimal digits that no other process is likely to come up with.
std::string RandomDigits();

}  // namespace tarn::posix
