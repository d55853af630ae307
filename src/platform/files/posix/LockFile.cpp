#include "platform/files/posix/LockFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/posix/AtomicWrite.h"
#include "platform/files/posix/PosixError.h"

namespace tarn::posix {

namespace {

constexpr std::size_t kMaxOwner = 256;  // bytes

class HeldLock : public FileLock {
 public:
  explicit HeldLock(Descriptor lockFile) : file(std::move(lockFile)) {}

 private:
  Descriptor file;
};

std::string ReadOwner(int file) {
  char text[kMaxOwner];
  const ssize_t length = pread(file, text, sizeof text, 0);
  return std::string(text, length < 0 ? 0 : static_cast<std::size_t>(length));
}

// The file may have been removed or replaced between our open and our lock.
bool IsStillNamed(const std::string& name, int file) {
  struct stat ours {};
  struct stat named {};
  return fstat(file, &ours) == 0 && lstat(name.c_str(), &named) == 0 &&
         ours.st_ino == named.st_ino && ours.st_dev == named.st_dev;
}

}  // namespace

Result<std::unique_ptr<FileLock>> TryLockFile(const std::string& name) {
  const std::string owner = "process " + std::to_string(getpid());
  for (;;) {
    Descriptor file(
        open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666));
    if (!file) return ErrorOf(errno, name);
    if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
      if (errno == EINTR) continue;
      if (errno != EWOULDBLOCK) return ErrorOf(errno, name);
      return ErrorOf(ErrorCode::Busy, ReadOwner(file.Get()), name);
    }
    if (!IsStillNamed(name, file.Get())) continue;
    // The text is for people only, so a full disk does no harm.
    (void)(ftruncate(file.Get(), 0) == 0 && WriteAll(file.Get(), owner, 0));
    return std::unique_ptr<FileLock>(std::make_unique<HeldLock>(std::move(file)));
  }
}

}  // namespace tarn::posix
