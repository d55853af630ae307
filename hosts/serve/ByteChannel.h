#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace tarn::host {

// Connection over which bytes are read and written. One thread reads and one writes; they may be
// different ones. Supplied by the port.
class ByteChannel {
 public:
  struct Events {
    bool hasInput = false;  // Read() won't block
    bool isBroken = false;  // the other end of the output was closed
  };
  enum class WriteState { Ready, Full, Broken };

  ByteChannel() = default;
  ByteChannel(const ByteChannel&) = delete;
  ByteChannel& operator=(const ByteChannel&) = delete;
  virtual ~ByteChannel() = default;

  // Blocks until the output is broken, Wake() was called since the last return or, if `forInput`,
  // there is input or its end. May return without a reason.
  virtual Events Wait(bool forInput) = 0;
  // Ends a Wait(). May be called on any thread.
  virtual void Wake() = 0;
  // Returns the number of bytes read; 0 at the end of the input, including an error; nullopt if
  // there are none at present.
  virtual std::optional<std::size_t> Read(char* bytes, std::size_t size) = 0;

  // Waits until some bytes can be written without blocking.
  virtual WriteState WaitToWrite(std::chrono::milliseconds limit) = 0;
  // Writes some of the bytes and returns their number. Doesn't block if WaitToWrite() has returned
  // Ready since the last call. Returns nullopt on error.
  virtual std::optional<std::size_t> Write(std::string_view bytes) = 0;
};

// Takes standard input and output away from the rest of this process and from the tools it starts:
// afterwards its standard input is empty and its standard output goes to standard error. Their
// places are not restored. Returns nullptr if one of them is closed. Throws std::system_error if
// the system has no resources left.
std::unique_ptr<ByteChannel> TakeStandardStreams();

}  // namespace tarn::host
