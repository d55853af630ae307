#include "hosts/serve/posix/DescriptorChannel.h"

#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

namespace tarn::host {

namespace {

// Moves one of the standard descriptors to a number that is not inherited by tools and not written
// to by other code of this process; `replacement` takes its place. -1 on error.
class MovedDescriptor {
 public:
  MovedDescriptor(int standard, int replacement)
      : descriptor_(fcntl(standard, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    if (replacement >= 0) dup2(replacement, standard);
  }
  MovedDescriptor(const MovedDescriptor&) = delete;
  MovedDescriptor& operator=(const MovedDescriptor&) = delete;
  ~MovedDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  int Get() const { return descriptor_; }

 private:
  const int descriptor_;
};

// The owned descriptors; a base class, so that they outlive the channel over them.
struct StandardDescriptors {
  explicit StandardDescriptors(int nothing)
      : movedInput(STDIN_FILENO, nothing), movedOutput(STDOUT_FILENO, STDERR_FILENO) {}

  MovedDescriptor movedInput;
  MovedDescriptor movedOutput;
};

class StandardChannel : private StandardDescriptors, public DescriptorChannel {
 public:
  explicit StandardChannel(int nothing)
      : StandardDescriptors(nothing), DescriptorChannel(movedInput.Get(), movedOutput.Get()) {}

  // A stream that was closed when the program started is open for the other direction.
  bool IsOpen() const {
    return IsOpenFor(O_RDONLY, movedInput.Get()) && IsOpenFor(O_WRONLY, movedOutput.Get());
  }

 private:
  static bool IsOpenFor(int direction, int descriptor) {
    const int flags = descriptor < 0 ? -1 : fcntl(descriptor, F_GETFL);
    return flags >= 0 && ((flags & O_ACCMODE) == direction || (flags & O_ACCMODE) == O_RDWR);
  }
};

}  // namespace

DescriptorChannel::DescriptorChannel(int inputDescriptor, int outputDescriptor)
    : input_(inputDescriptor), output_(outputDescriptor) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::system_error(errno, std::generic_category(), "no pipe");
  }
  wakeRead_ = ends[0];
  wakeWrite_ = ends[1];
}

DescriptorChannel::~DescriptorChannel() {
  close(wakeRead_);
  close(wakeWrite_);
}

ByteChannel::Events DescriptorChannel::Wait(bool forInput) {
  pollfd watched[] = {{wakeRead_, POLLIN, 0}, {forInput ? input_ : -1, POLLIN, 0}, {output_, 0, 0}};
  if (poll(watched, std::size(watched), -1) < 0) return {false, errno != EINTR};
  if (watched[0].revents != 0) {
    char words[64];
    [[maybe_unused]] const auto count = read(wakeRead_, words, sizeof words);
  }
  return {watched[1].revents != 0, (watched[2].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0};
}

void DescriptorChannel::Wake() {
  const char word = 'w';
  [[maybe_unused]] const auto written = write(wakeWrite_, &word, 1);
}

std::optional<std::size_t> DescriptorChannel::Read(char* bytes, std::size_t size) {
  const ssize_t count = read(input_, bytes, size);
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return std::nullopt;
  return count < 0 ? 0 : static_cast<std::size_t>(count);
}

ByteChannel::WriteState DescriptorChannel::WaitToWrite(std::chrono::milliseconds limit) {
  pollfd watched{output_, POLLOUT, 0};
  const int ready = poll(&watched, 1, static_cast<int>(limit.count()));
  if (ready < 0) return errno == EINTR ? WriteState::Full : WriteState::Broken;
  if (ready == 0) return WriteState::Full;
  return (watched.revents & POLLOUT) != 0 ? WriteState::Ready : WriteState::Broken;
}

std::optional<std::size_t> DescriptorChannel::Write(std::string_view bytes) {
  // A ready pipe accepts this many bytes without blocking.
  const ssize_t count = write(output_, bytes.data(), std::min<std::size_t>(bytes.size(), PIPE_BUF));
  if (count >= 0) return static_cast<std::size_t>(count);
  return errno == EINTR || errno == EAGAIN ? std::optional<std::size_t>(0) : std::nullopt;
}

std::unique_ptr<ByteChannel> TakeStandardStreams() {
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  auto channel = std::make_unique<StandardChannel>(nothing);
  if (nothing >= 0) close(nothing);
  return channel->IsOpen() ? std::move(channel) : nullptr;
}

}  // namespace tarn::host
