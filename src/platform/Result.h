#pragma once

#include <optional>
#include <string>
#include <utility>

namespace tarn {

// Reason why an operation of the platform layer failed.
enum class ErrorCode {
  None,
  NotFound,       // no such file, folder, key, class or window
  AlreadyExists,  // something exists that must not be overwritten
  ReadOnly,       // the target is not writable
  NotAFile,       // a folder or a device where a file is expected
  InvalidName,    // a name that this system cannot represent
  NoSpace,        // the disk is full
  Io,             // any other error reported by the OS
  Changed,        // the file is not in the state that the caller expects
  Unsupported,
  Busy,        // another process or object holds the lock
  CannotOpen,  // exists but cannot be opened, or its size or memory cannot be obtained
};

// The error type of the whole platform layer: a code for decisions, the OS's error message for the
// user, and the location (path, key) of the failure.
struct Error {
  ErrorCode code = ErrorCode::None;
  std::string text;
  std::string place;
};

// Outcome of an operation without a value. Converts to true on success.
class [[nodiscard]] Status {
 public:
  Status() = default;
  // Implicit, so that functions can return an Error directly.
  Status(Error failure) : error_(std::move(failure)) {}

  explicit operator bool() const { return error_.code == ErrorCode::None; }
  const Error& GetError() const { return error_; }

 private:
  Error error_;
};

// Outcome of an operation with a value: either the value or an Error. Converts to true on success.
template <class T>
class [[nodiscard]] Result {
 public:
  // Implicit, so that functions can return either a value or an Error.
  Result(T result) : value_(std::move(result)) {}
  Result(Error failure) : error_(std::move(failure)) {}

  explicit operator bool() const { return value_.has_value(); }
  const Error& GetError() const { return error_; }
  // Require success.
  T& operator*() { return *value_; }
  const T& operator*() const { return *value_; }
  T* operator->() { return &*value_; }
  const T* operator->() const { return &*value_; }

 private:
  std::optional<T> value_;
  Error error_;
};

}  // namespace tarn
