#pragma once

#include <optional>
#include <string>
#include <utility>

namespace tarn {

// Why an operation of the platform layer did not do its work.
enum class ErrorCode {
  None,
  NotFound,       // no such file, folder, key, class or window
  AlreadyExists,  // something is in the way that must not be overwritten
  ReadOnly,       // the target may not be written
  NotAFile,       // a folder or a device stands where a file is wanted
  InvalidName,    // a name that this machine cannot hold
  NoSpace,        // the disk is full
  Io,             // any other failure of the machine
  Changed,        // the file is not the one that the caller left
  Unsupported,
  Busy,        // another process or object holds the lock
  CannotOpen,  // there, but it cannot be opened, or its size or memory cannot be had
};

// One way to report failure inside the platform layer: a code to act on, a text to show (the
// machine's own words) and the place (path, key) that it happened at.
struct Error {
  ErrorCode code = ErrorCode::None;
  std::string text;
  std::string place;
};

// The outcome of an operation without a value. Converts to true when it succeeded.
class [[nodiscard]] Status {
 public:
  Status() = default;
  Status(Error failure) : error(std::move(failure)) {}

  explicit operator bool() const { return error.code == ErrorCode::None; }
  const Error& GetError() const { return error; }

 private:
  Error error;
};

// The outcome of an operation with a value: either the value or an Error.
template <class T>
class [[nodiscard]] Result {
 public:
  Result(T result) : value(std::move(result)) {}
  Result(Error failure) : error(std::move(failure)) {}

  explicit operator bool() const { return value.has_value(); }
  const Error& GetError() const { return error; }
  // Only when the operation succeeded.
  T& operator*() { return *value; }
  const T& operator*() const { return *value; }
  T* operator->() { return &*value; }
  const T* operator->() const { return &*value; }

 private:
  std::optional<T> value;
  Error error;
};

}  // namespace tarn
