#include "hosts/core/SerialPort.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace tarn::host {

namespace {

constexpr std::pair<int, speed_t> kSpeeds[] = {
    {300, B300},         {600, B600},         {1200, B1200},       {2400, B2400},
    {4800, B4800},       {9600, B9600},       {19200, B19200},     {38400, B38400},
    {57600, B57600},     {115200, B115200},   {230400, B230400},   {460800, B460800},
    {500000, B500000},   {576000, B576000},   {921600, B921600},   {1000000, B1000000},
    {1500000, B1500000}, {2000000, B2000000}, {3000000, B3000000}, {4000000, B4000000},
};

class PosixSerialPort : public SerialPort {
 public:
  explicit PosixSerialPort(int descriptor) : port_(descriptor) {}
  PosixSerialPort(const PosixSerialPort&) = delete;
  PosixSerialPort& operator=(const PosixSerialPort&) = delete;
  ~PosixSerialPort() override { close(port_); }

  Event Wait(std::chrono::milliseconds most, std::string& bytes) override {
    pollfd polled[2] = {{port_, POLLIN, 0}, {hasInput_ ? STDIN_FILENO : -1, POLLIN, 0}};
    if (poll(polled, 2, static_cast<int>(most.count())) <= 0) return Event::None;
    if (polled[0].revents != 0) return Read(port_, bytes) ? Event::Data : Event::Gone;
    if (Read(STDIN_FILENO, bytes)) return Event::Input;
    hasInput_ = false;
    return Event::InputEnd;
  }

  bool Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t count = write(port_, bytes.data(), bytes.size());
      if (count > 0) {
        bytes.remove_prefix(static_cast<std::size_t>(count));
      } else if (errno == EAGAIN) {
        pollfd polled{port_, POLLOUT, 0};
        if (poll(&polled, 1, 1000) <= 0) return false;
      } else if (errno != EINTR) {
        return false;
      }
    }
    return true;
  }

 private:
  static bool Read(int descriptor, std::string& bytes) {
    char buffer[4096];
    const ssize_t count = read(descriptor, buffer, sizeof buffer);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) return true;
    if (count <= 0) return false;
    bytes.assign(buffer, static_cast<std::size_t>(count));
    return true;
  }

  int port_;
  bool hasInput_ = true;
};

Error Failure(const std::string& path) {
  return {errno == ENOENT ? ErrorCode::NotFound : ErrorCode::Io, std::strerror(errno), path};
}

}  // namespace

Result<std::unique_ptr<SerialPort>> SerialPort::Open(const std::string& path, int baud) {
  const auto* const row =
      std::ranges::find_if(kSpeeds, [&](const auto& each) { return each.first == baud; });
  if (row == std::end(kSpeeds)) {
    return Error{ErrorCode::Io, "it doesn't support " + std::to_string(baud) + " baud", path};
  }
  const int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return Failure(path);
  auto port = std::make_unique<PosixSerialPort>(descriptor);
  termios settings{};
  if (tcgetattr(descriptor, &settings) != 0) {
    return Error{ErrorCode::Io, "it is not a serial port", path};
  }
  cfmakeraw(&settings);
  settings.c_cflag |= CLOCAL | CREAD;
  cfsetispeed(&settings, row->second);
  cfsetospeed(&settings, row->second);
  if (tcsetattr(descriptor, TCSANOW, &settings) != 0) return Failure(path);
  return std::unique_ptr<SerialPort>(std::move(port));
}

struct RawInput::State {
  termios before{};
};

RawInput::RawInput() {
  State state;
  if (tcgetattr(STDIN_FILENO, &state.before) != 0) return;
  termios raw = state.before;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  raw.c_cc[VMIN] = 1;
  raw.c_cc[VTIME] = 0;
  if (tcsetattr(STDIN_FILENO, TCSANOW, &raw) == 0) state_ = std::make_unique<State>(state);
}

RawInput::~RawInput() {
  if (state_) tcsetattr(STDIN_FILENO, TCSANOW, &state_->before);
}

}  // namespace tarn::host
