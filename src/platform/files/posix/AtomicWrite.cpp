#include "platform/files/posix/AtomicWrite.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"

namespace tarn::posix {

namespace {

constexpr int kNameAttempts = 16;
constexpr int kLinkDepth = 40;
constexpr std::size_t kLargestWrite = std::size_t{1} << 30;

constexpr std::string_view kTemporaryPrefix = ".tarn-";
// Digits of a temporary name: an id of the running system, the process id, random digits.
constexpr std::size_t kMachineDigits = 4;
constexpr std::size_t kProcessDigits = 6;
constexpr std::size_t kDigits = 16;
// A write takes far less time, even in a process that was suspended for a while.
constexpr std::time_t kAbandonedSeconds = 600;
// A process may be idle for long, and it may run in a container, where its id is unknown here.
constexpr std::time_t kForgottenSeconds = 7 * 24 * 3600;

std::string Hexadecimal(std::uint64_t number, std::size_t count) {
  std::string digits(count, '0');
  for (std::size_t i = count; i-- > 0; number >>= 4) digits[i] = "0123456789abcdef"[number & 15];
  return digits;
}

// Id of the system since its last boot and of the PID namespace, within which process ids are
// unique.
std::string MachineDigits() {
  static const std::string digits = [] {
    std::string text;
    std::ifstream("/proc/sys/kernel/random/boot_id") >> text;
    std::error_code failure;
    text += std::filesystem::read_symlink("/proc/self/ns/pid", failure).string();
    // Other processes then cannot recognise the file as one of theirs.
    if (text.empty()) return RandomDigits().substr(0, kMachineDigits);
    return Hexadecimal(HashBytes(text), kMachineDigits);
  }();
  return digits;
}

// Digits for a new name. They identify the owner, so that other processes can tell when the file is
// abandoned.
std::string OwnDigits() {
  const std::string random = RandomDigits();
  return MachineDigits() + Hexadecimal(static_cast<std::uint64_t>(getpid()), kProcessDigits) +
         random.substr(kMachineDigits + kProcessDigits);
}

// A newly created file and its name. Only a killed process leaves one behind; that does no harm,
// since later processes use other names and RemoveAbandoned() removes it.
struct NewFile {
  std::string name;
  std::unique_ptr<Descriptor> file;
};

Result<NewFile> OpenNew(const std::string& start, mode_t mode) {
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    NewFile created{start + OwnDigits(), nullptr};
    const int file = Retry([&] {
      return open(created.name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    });
    if (file >= 0) {
      created.file = std::make_unique<Descriptor>(file);
      return created;
    }
    if (errno != EEXIST) break;
  }
  return ErrorOf(errno, start);
}

// A temporary file next to the target. It is either renamed to the target or removed by the
// destructor.
class TemporaryFile {
 public:
  static Result<std::unique_ptr<TemporaryFile>> Create(const std::string& folder, mode_t mode) {
    Result<NewFile> created = OpenNew(JoinPath(folder, kTemporaryPrefix), mode);
    if (!created) return created.GetError();
    return std::make_unique<TemporaryFile>(std::move(*created));
  }

  explicit TemporaryFile(NewFile created) : own_(std::move(created)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!moved_) unlink(own_.name.c_str());
  }

  // Copies owner and mode of the replaced file. Only root may change the owner, and some file
  // systems support neither; that must not make a save fail.
  bool TakeOver(const struct stat& old) const {
    const int file = own_.file->Get();
    const bool given = Retry([&] { return fchown(file, old.st_uid, old.st_gid); }) == 0;
    const mode_t mode = old.st_mode & (given ? 07777 : 0777);
    if (Retry([&] { return fchmod(file, mode); }) == 0) return true;
    return errno == EPERM || errno == EOPNOTSUPP;
  }

  // Writes and closes the file. On success the bytes are on disk, if this kind of file is flushed.
  bool Fill(std::string_view bytes, FileKind kind) const {
    const int file = own_.file->Get();
    return WriteAll(file, bytes) && (kind == FileKind::Scratch || Flush(file)) &&
           own_.file->Close();
  }

  bool MoveOver(const std::string& target) {
    moved_ = std::rename(own_.name.c_str(), target.c_str()) == 0;
    return moved_;
  }

  // Takes the name only if it is free.
  bool MoveBeside(const std::string& target) {
    if (link(own_.name.c_str(), target.c_str()) == 0) return true;
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EMLINK) return false;
    // The file system has no hard links: reserve the name first.
    const Descriptor reserved(Retry([&] {
      return open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    }));
    if (!reserved) return false;
    if (MoveOver(target)) return true;
    const int reason = errno;
    unlink(target.c_str());
    errno = reason;
    return false;
  }

 private:
  static bool Flush(int file) {
    return Retry([&] { return fsync(file); }) == 0;
  }

  NewFile own_;
  bool moved_ = false;
};

std::string FolderToOpen(const std::string& name) {
  const std::string folder = FolderOf(name);
  return folder.empty() ? "." : folder;
}

// Returns false for a process that has ended, also if its parent has not waited for it yet: that
// may take long, but the process no longer writes.
bool IsRunning(pid_t id) {
  if (id <= 0 || (kill(id, 0) != 0 && errno == ESRCH)) return false;
  std::ifstream file("/proc/" + std::to_string(id) + "/stat");
  std::string status;
  std::getline(file, status);
  // The state follows the name, which may contain any character.
  const std::size_t state = status.rfind(") ");
  if (state == status.npos || state + 2 >= status.size()) return true;
  return status[state + 2] != 'Z' && status[state + 2] != 'X';
}

// Returns whether the digits name a process of this system that has ended.
bool IsProcessGone(std::string_view digits) {
  if (!digits.starts_with(MachineDigits())) return false;
  const std::string process(digits.substr(kMachineDigits, kProcessDigits));
  return !IsRunning(static_cast<pid_t>(std::strtol(process.c_str(), nullptr, 16)));
}

// Returns whether a temporary file with these digits no longer belongs to a running process. For a
// file from another system, or from before a reboot, only its age counts: the time of the last
// status change, since a file that got a second name may have been written long ago.
bool IsAbandoned(std::string_view digits, const struct stat& info) {
  const bool isOld = info.st_ctime + kAbandonedSeconds < std::time(nullptr);
  return isOld || IsProcessGone(digits);
}

// Removes the regular files of a folder whose names are the prefix, digits and a rest, if
// `isAbandoned(digits, rest, status)` returns true. Errors are ignored.
template <class IsAbandoned>
void RemoveNamed(const std::string& folder, std::string_view prefix,
                 const IsAbandoned& isAbandoned) {
  const auto close = [](DIR* open) { closedir(open); };
  const std::unique_ptr<DIR, decltype(close)> entries(opendir(folder.c_str()), close);
  if (!entries) return;
  while (const dirent* entry = readdir(entries.get())) {
    const std::string_view name = entry->d_name;
    if (!name.starts_with(prefix) || name.size() < prefix.size() + kDigits) continue;
    const std::string_view digits = name.substr(prefix.size(), kDigits);
    if (digits.find_first_not_of("0123456789abcdef") != digits.npos) continue;
    const std::string path = JoinPath(folder, name);
    struct stat info {};
    if (lstat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
        isAbandoned(digits, name.substr(prefix.size() + kDigits), info)) {
      unlink(path.c_str());
    }
  }
}

// Removes temporary files that killed processes have left in the folder; if that fails, the next
// durable write tries again.
void RemoveAbandoned(const std::string& folder) {
  RemoveNamed(folder, kTemporaryPrefix,
              [](std::string_view digits, std::string_view rest, const struct stat& info) {
                return rest.empty() && IsAbandoned(digits, info);
              });
}

// Returns true for the first write of a file of the program in this process. A build replaces its
// log several times a second; listing the folder each time would take longer than the write.
bool IsFirstOwnWrite(const std::string& target) {
  static std::mutex lock;
  static std::set<std::string> known;
  const std::lock_guard guard(lock);
  return known.insert(target).second;
}

// Flushes the new names of a folder to disk and removes abandoned files. An error here does not
// fail the write: the new file is in place, and at worst a crash brings back the complete old one.
void FinishFolder(const std::string& folder, bool removesAbandoned = true) {
  const Descriptor opened(
      Retry([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (opened) (void)fsync(opened.Get());
  if (removesAbandoned) RemoveAbandoned(folder);
}

// End of a chain of symbolic links, which need not exist.
Result<std::string> FollowLinks(std::string name) {
  for (int depth = 0; depth < kLinkDepth; ++depth) {
    std::string text(4096, '\0');
    const ssize_t length = readlink(name.c_str(), text.data(), text.size());
    if (length < 0) return name;  // not a link, or does not exist
    text.resize(static_cast<std::size_t>(length));
    name = text.starts_with('/') ? text : AddSeparator(FolderOf(name)) + text;
  }
  return ErrorOf(ELOOP, name);
}

// Returns true if the folder has the sticky bit, and this process may not replace or remove the
// file in it. Found out in advance, because a second name of such a file can't be removed either.
bool IsKeptBySticky(const std::string& folder, const struct stat& file) {
  struct stat info {};
  if (stat(folder.c_str(), &info) != 0 || (info.st_mode & S_ISVTX) == 0) return false;
  const uid_t user = geteuid();
  return user != 0 && user != file.st_uid && user != info.st_uid;
}

// A file that has been written under a temporary name, ready to be renamed to the target.
class Replacement {
 public:
  static Result<std::unique_ptr<Replacement>> Prepare(const std::string& target,
                                                      std::string_view bytes, FileKind kind);
  ~Replacement() {
    if (!former_.empty()) unlink(former_.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  // Links the existing file under a second name, from which GiveBack() restores it. Returns false,
  // with the reason in errno, if that fails.
  bool KeepFormer() {
    if (!exists_) return true;
    const std::string name = JoinPath(FolderToOpen(place_), kTemporaryPrefix) + OwnDigits();
    if (link(place_.c_str(), name.c_str()) == 0) {
      former_ = name;
      return true;
    }
    // Without hard links no rollback is possible; GiveBack() reports that.
    return errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS || errno == EMLINK;
  }
  bool TakeName() { return file_->MoveOver(place_); }
  // Undoes TakeName(): restores the previous file under the name.
  bool GiveBack() {
    if (!exists_) return unlink(place_.c_str()) == 0;
    if (former_.empty() || std::rename(former_.c_str(), place_.c_str()) != 0) return false;
    former_.clear();
    return true;
  }
  std::string GetFolder() const { return FolderToOpen(place_); }

 private:
  Replacement(std::string name, bool isThere, std::unique_ptr<TemporaryFile> temporary)
      : place_(std::move(name)), exists_(isThere), file_(std::move(temporary)) {}

  std::string place_;
  bool exists_;
  std::unique_ptr<TemporaryFile> file_;
  std::string former_;  // second name of the replaced file; empty if there is none
};

Result<std::unique_ptr<Replacement>> Replacement::Prepare(const std::string& target,
                                                          std::string_view bytes, FileKind kind) {
  const bool isUsers = kind == FileKind::User;
  const Result<std::string> place = isUsers ? FollowLinks(target) : Result<std::string>(target);
  if (!place) return place.GetError();
  struct stat old {};
  bool exists = lstat(place->c_str(), &old) == 0;
  if (!exists && errno != ENOENT) return ErrorOf(errno, target);
  if (exists && S_ISLNK(old.st_mode)) {
    if (kind == FileKind::Own) return FileSystem::RefuseLink(target);
    exists = false;  // the link itself is replaced
  }
  if (exists && !S_ISREG(old.st_mode)) {
    return ErrorOf(ErrorCode::NotAFile, "not a regular file", target);
  }
  if (exists) {
    Status writable = CheckWritableName(*place, old.st_mode, target);
    if (writable && IsKeptBySticky(FolderToOpen(*place), old)) {
      writable = ErrorOf(ErrorCode::ReadOnly,
                         "it belongs to another user, and so does its folder, in which only the "
                         "owner of a file may replace it",
                         target);
    }
    if (!writable) return writable.GetError();
  }
  // No other user may read the content before the new file has the mode of the old one.
  Result<std::unique_ptr<TemporaryFile>> temporary =
      TemporaryFile::Create(FolderToOpen(*place), exists ? S_IRUSR | S_IWUSR : 0666);
  if (!temporary) return ErrorOf(temporary.GetError().code, temporary.GetError().text, target);
  if ((exists && !(*temporary)->TakeOver(old)) || !(*temporary)->Fill(bytes, kind)) {
    return ErrorOf(errno, target);
  }
  return std::unique_ptr<Replacement>(new Replacement(*place, exists, std::move(*temporary)));
}

}  // namespace

bool WriteAll(int file, std::string_view bytes, off_t offset) {
  while (!bytes.empty()) {
    const std::size_t wanted = std::min(bytes.size(), kLargestWrite);
    const ssize_t done =
        offset < 0 ? write(file, bytes.data(), wanted) : pwrite(file, bytes.data(), wanted, offset);
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) return false;
    if (done == 0) {
      errno = EIO;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(done));
    if (offset >= 0) offset += done;
  }
  return true;
}

Status CheckWritableName(const std::string& name, mode_t mode, const std::string& place) {
  if ((mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
    return ErrorOf(ErrorCode::ReadOnly, S_ISDIR(mode) ? "read-only" : "the file is read-only",
                   place);
  }
  if (faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) == 0) return {};
  // Any other error occurs again, with its reason, when the file is written.
  return CodeOf(errno) == ErrorCode::ReadOnly ? Status(ErrorOf(errno, place)) : Status();
}

Status ReplaceFile(const std::string& target, std::string_view bytes, FileKind kind) {
  const Result<std::unique_ptr<Replacement>> ready = Replacement::Prepare(target, bytes, kind);
  if (!ready) return ready.GetError();
  if (!(*ready)->TakeName()) return ErrorOf(errno, target);
  if (kind != FileKind::Scratch) {
    FinishFolder((*ready)->GetFolder(), kind == FileKind::User || IsFirstOwnWrite(target));
  }
  return {};
}

Status ReplaceFiles(std::span<const FileBytes> list) {
  std::vector<std::unique_ptr<Replacement>> ready;
  for (const FileBytes& each : list) {
    auto prepared = Replacement::Prepare(each.path, each.bytes, FileKind::User);
    if (!prepared) return prepared.GetError();
    ready.push_back(std::move(*prepared));
    if (list.size() > 1 && !ready.back()->KeepFormer()) return ErrorOf(errno, each.path);
  }
  for (std::size_t i = 0; i < ready.size(); ++i) {
    if (ready[i]->TakeName()) continue;
    Error error = ErrorOf(errno, list[i].path);
    while (i-- > 0) {
      if (ready[i]->GiveBack()) continue;
      error.text += "; " + list[i].path + " has been written and can't be put back";
    }
    return error;
  }
  std::set<std::string> folders;
  for (const auto& each : ready) folders.insert(each->GetFolder());
  for (const std::string& each : folders) FinishFolder(each);
  return {};
}

Status CreateNewFile(const std::string& target, std::string_view bytes, mode_t mode) {
  const std::string folder = FolderToOpen(target);
  const Result<std::unique_ptr<TemporaryFile>> temporary = TemporaryFile::Create(folder, mode);
  if (!temporary) return ErrorOf(temporary.GetError().code, temporary.GetError().text, target);
  if (!(*temporary)->Fill(bytes, FileKind::Own) || !(*temporary)->MoveBeside(target)) {
    return ErrorOf(errno, target);
  }
  FinishFolder(folder);
  return {};
}

Result<std::string> CreateReserved(const std::string& folder, std::string_view prefix) {
  Result<NewFile> created = OpenNew(AddSeparator(folder).append(prefix), S_IRUSR | S_IWUSR);
  if (!created) return created.GetError();
  return std::move(created->name);
}

void RemoveAbandonedNames(const std::string& folder, std::string_view prefix) {
  RemoveNamed(folder, prefix,
              [](std::string_view digits, std::string_view rest, const struct stat& info) {
                const bool isOld = info.st_ctime + kForgottenSeconds < std::time(nullptr);
                const bool isHere = digits.starts_with(MachineDigits());
                return rest.starts_with('.') && info.st_uid == geteuid() &&
                       (isHere ? IsProcessGone(digits) : isOld);
              });
}

}  // namespace tarn::posix
