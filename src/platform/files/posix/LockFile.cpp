#include "platform/files/posix/LockFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>

#include "platform/files/posix/AtomicWrite.h"
#include "platform/files/posix/PosixError.h"
#include "platform/paths/Paths.h"

namespace tarn::posix {

namespace {

// Each purpose locks one byte of the file, and owns this many bytes for the name of the holder.
constexpr std::size_t kOwnerLength = 32;
constexpr const char* kOwnerPrefix = "process ";

class HeldLock : public FileLock {
 public:
  explicit HeldLock(Descriptor lockFile) : file_(std::move(lockFile)) {}

 private:
  Descriptor file_;
};

off_t OwnerPlace(LockPurpose purpose) {
  return static_cast<off_t>(purpose) * static_cast<off_t>(kOwnerLength);
}

std::string ReadOwner(int file, LockPurpose purpose) {
  char text[kOwnerLength];
  const ssize_t length = Retry([&] { return pread(file, text, sizeof text, OwnerPlace(purpose)); });
  std::string owner(text, length < 0 ? 0 : static_cast<std::size_t>(length));
  owner.resize(std::min(owner.find_last_not_of(" \n") + 1, owner.size()));
  return owner;
}

// Returns whether the file is a lock file of ours. Another file that was put in its place, such as
// a hard link to some user file, is locked but not overwritten.
bool IsOurs(int file) {
  struct stat status {};
  char start[kOwnerLength];
  if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_nlink != 1) return false;
  const ssize_t length = Retry([&] { return pread(file, start, sizeof start, 0); });
  if (length < 0) return false;
  // Text of the first purpose, or the gap before that of a later purpose.
  const std::string_view text(start, static_cast<std::size_t>(length));
  return text.starts_with(kOwnerPrefix) || text.find_first_not_of('\0') == text.npos;
}

// The text is only informative, so a full disk does no harm.
void WriteOwner(int file, LockPurpose purpose) {
  std::string owner = kOwnerPrefix + std::to_string(getpid());
  owner.resize(kOwnerLength - 1, ' ');
  (void)(pwrite(file, (owner + "\n").data(), kOwnerLength, OwnerPlace(purpose)) > 0);
}

// A link would let the author of a project choose which file is created or locked.
Error OpenErrorOf(int number, const std::string& name) {
  std::error_code failure;
  const std::filesystem::path target = std::filesystem::read_symlink(name, failure);
  if (failure) {
    Error error = ErrorOf(number, name);
    // In a writable folder, others can change the project at the same time.
    const bool isWritable = faccessat(AT_FDCWD, FolderOf(name).c_str(), W_OK, AT_EACCESS) == 0;
    if (error.code == ErrorCode::ReadOnly && isWritable) error.code = ErrorCode::Io;
    return error;
  }
  return {ErrorCode::NotAFile,
          "it is a symbolic link to " + target.string() + ", which is not followed", name};
}

// Makes the lock file writable for all who can write its folder, and so replace the project's
// files, regardless of the umask of the user who created it. Users share files of a sticky folder
// by their permissions only.
void AdmitUsersOfFolder(int file, const std::string& name) {
  struct stat own {};
  struct stat folder {};
  if (fstat(file, &own) != 0 || stat(FolderOf(name).c_str(), &folder) != 0) return;
  if ((folder.st_mode & S_ISVTX) != 0) return;
  if (geteuid() == 0 && own.st_uid == 0 && folder.st_uid != 0) {
    (void)!fchown(file, folder.st_uid, static_cast<gid_t>(-1));
  }
  mode_t mode = own.st_mode & 0777;
  const auto hasGroup = [&] {
    return own.st_gid == folder.st_gid || fchown(file, static_cast<uid_t>(-1), folder.st_gid) == 0;
  };
  if ((folder.st_mode & S_IWGRP) != 0 && hasGroup()) mode |= S_IRGRP | S_IWGRP;
  if ((folder.st_mode & S_IWOTH) != 0) mode |= S_IROTH | S_IWOTH;
  if (mode != (own.st_mode & 0777)) (void)fchmod(file, mode);
}

// Opens the lock file, or creates it. The permissions of a file that exists are extended later.
Descriptor OpenOrCreate(const std::string& name) {
  constexpr int kHow = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  while (true) {
    Descriptor file(Retry([&] { return open(name.c_str(), kHow); }));
    if (file || errno != ENOENT) return file;
    file = Descriptor(Retry([&] { return open(name.c_str(), kHow | O_CREAT | O_EXCL, 0666); }));
    if (file) AdmitUsersOfFolder(file.Get(), name);
    if (file || errno != EEXIST) return file;
  }
}

// The file may have been removed or replaced between open() and the lock.
bool IsStillNamed(const std::string& name, int file) {
  struct stat ours {};
  struct stat named {};
  return fstat(file, &ours) == 0 && lstat(name.c_str(), &named) == 0 &&
         ours.st_ino == named.st_ino && ours.st_dev == named.st_dev;
}

}  // namespace

// The lock belongs to the open file description, not to the process, since the process may have the
// file open elsewhere.
Result<std::unique_ptr<FileLock>> TryLockFile(const std::string& name, LockPurpose purpose) {
  for (;;) {
    Descriptor file = OpenOrCreate(name);
    if (!file) return OpenErrorOf(errno, name);
    struct stat status {};
    if (fstat(file.Get(), &status) != 0) return ErrorOf(errno, name);
    if (!S_ISREG(status.st_mode)) {
      return ErrorOf(ErrorCode::NotAFile, "not a regular file", name);
    }
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = static_cast<off_t>(purpose);
    range.l_len = 1;
    if (fcntl(file.Get(), F_OFD_SETLK, &range) != 0) {
      if (errno == EINTR) continue;
      if (errno != EAGAIN && errno != EACCES) return ErrorOf(errno, name);
      return ErrorOf(ErrorCode::Busy, ReadOwner(file.Get(), purpose), name);
    }
    if (!IsStillNamed(name, file.Get())) continue;
    if (IsOurs(file.Get())) {
      AdmitUsersOfFolder(file.Get(), name);
      WriteOwner(file.Get(), purpose);
    }
    return std::unique_ptr<FileLock>(std::make_unique<HeldLock>(std::move(file)));
  }
}

}  // namespace tarn::posix
