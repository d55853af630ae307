#include "hosts/core/LocalPort.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdint>

#include "platform/process/posix/Descriptor.h"

namespace tarn::host {

bool IsLocalPortTaken(int port) {
  const Descriptor test(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!test) return false;
  // Connections that have ended don't count, only programs that listen.
  const int reuse = 1;
  setsockopt(test.Get(), SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return bind(test.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 &&
         errno == EADDRINUSE;
}

}  // namespace tarn::host
