#pragma once

#include <sys/types.h>

#include <mutex>
#include <span>
#include <string>

#include "platform/process/posix/Descriptor.h"
#include "platform/process/posix/GuardChannel.h"

namespace tarn {

// The process that starts the guards of this process's tools (see ToolGuard.cpp). It starts with
// the first request and ends with this process. It inherits the resource limits and the file mode
// mask of that moment. Thread-safe.
class GuardServer {
 public:
  static GuardServer& Get();
  GuardServer(const GuardServer&) = delete;
  GuardServer& operator=(const GuardServer&) = delete;

  // Requests a guard. `program` is the path of the guard's program; `sent` are descriptors in the
  // order that GuardChannel.h defines, borrowed. Starts the server if there is none, or again if it
  // is gone. Returns 0 or an errno value.
  int Request(const std::string& program, const guard::Request& request, std::span<const int> sent);

 private:
  GuardServer() = default;
  ~GuardServer();

  // Both return 0 or an errno value.
  int Start(const std::string& program);
  int Send(const guard::Request& request, std::span<const int> sent) const;
  void Stop();

  std::mutex lock_;
  Descriptor socket_;
  pid_t server_ = -1;
  pid_t owner_ = -1;  // a fork of this process does not own the server
};

}  // namespace tarn
