#pragma once

#include <chrono>
#include <memory>

#include "platform/Result.h"
#include "platform/process/MakeFlags.h"

namespace tarn {

// Tokens of a jobserver of GNU make, which programs share that may run several jobs at the same
// time: a program has one job of its own, and holds a token for each further one. Never blocks,
// except in Wait(). Not thread-safe, except for Wait() and Wake(). The destructor returns the
// tokens that are held.
class Jobserver {
 public:
  virtual ~Jobserver() = default;

  // Opens the jobserver of another program. On error its text says why it can't be used.
  static Result<std::unique_ptr<Jobserver>> Join(const JobserverAddress& address);
  // Creates one with this number of tokens.
  static Result<std::unique_ptr<Jobserver>> Create(int tokens);

  // Takes a token. Returns false if there is none.
  virtual bool Take() = 0;
  // Returns a token that is held.
  virtual void Return() = 0;
  // Number of tokens that are held.
  virtual int GetHeld() const = 0;
  // For a created one of which no token is in use: restores tokens that were lost because a program
  // ended without returning them.
  virtual void Refill() = 0;

  // Waits until there may be a token, until Wake(), or until the time has passed.
  virtual void Wait(std::chrono::milliseconds most) = 0;
  // Ends the current or, if there is none, the next Wait().
  virtual void Wake() = 0;

  // The address for programs that are started with the descriptors in it (ProcessRequest::passed).
  virtual JobserverAddress GetAddress() const = 0;
};

}  // namespace tarn
