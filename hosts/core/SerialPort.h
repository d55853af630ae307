#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Result.h"

namespace tarn::host {

// An open serial port, and the user's input. Supplied by the port of this program. Main thread
// only.
class SerialPort {
 public:
  enum class Event {
    None,      // nothing until the end of the time
    Data,      // from the device
    Input,     // from the user
    InputEnd,  // the user's input has ended; reported once
    Gone,      // the device was removed
  };

  virtual ~SerialPort() = default;
  // Opens a device that is a serial port or a terminal, and nothing else. On error the text says
  // why that isn't possible.
  static Result<std::unique_ptr<SerialPort>> Open(const std::string& path, int baud);

  // Waits for data of the device, or of standard input, and returns the bytes in `bytes`.
  virtual Event Wait(std::chrono::milliseconds most, std::string& bytes) = 0;
  // Returns false if the device is gone.
  virtual bool Write(std::string_view bytes) = 0;
};

// Passes the keys of the terminal on as they are typed, without echo, while the object exists. Has
// no effect if standard input is not a terminal.
class RawInput {
 public:
  RawInput();
  RawInput(const RawInput&) = delete;
  RawInput& operator=(const RawInput&) = delete;
  ~RawInput();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tarn::host
