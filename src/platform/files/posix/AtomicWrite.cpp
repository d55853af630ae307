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
// A name has the digits of the machine, then of the process, then random ones.
constexpr std::size_t kMachineDigits = 4;
constexpr std::size_t kProcessDigits = 6;
constexpr std::size_t kDigits = 16;
// A write takes far less, also that of a process that was stopped for a while.
constexpr std::time_t kAbandonedSeconds = 600;

std::string Hexadecimal(std::uint64_t number, std::size_t count) {
  std::string digits(count, '0');
  for (std::size_t i = count; i-- > 0; number >>= 4) digits[i] = "0123456789abcdef"[number & 15];
  return digits;
}

// The start of this machine since its last boot, as far as its processes see each other.
std::string MachineDigits() {
  static const std::string digits = [] {
    std::string text;
    std::ifstream("/proc/sys/kernel/random/boot_id") >> text;
    std::error_code failure;
    text += std::filesystem::read_symlink("/proc/self/ns/pid", failure).string();
    // Others can't tell then whether the process is one of theirs.
    if (text.empty()) return RandomDigits().substr(0, kMachineDigits);
    return Hexadecimal(HashBytes(text), kMachineDigits);
  }();
  return digits;
}

// The digits of a new name. They show whose it is, so that others know when it is abandoned.
std::string OwnDigits() {
  const std::string random = RandomDigits();
  return MachineDigits() + Hexadecimal(static_cast<std::uint64_t>(getpid()), kProcessDigits) +
         random.substr(kMachineDigits + kProcessDigits);
}

// A file that did not exist before, and its name. Only a killed process leaves one; it does no
// harm, since no later process comes up with its name again, and RemoveAbandoned() removes it.
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

// A file beside the target, which takes over the target's name or disappears.
class TemporaryFile {
 public:
  static Result<std::unique_ptr<TemporaryFile>> Create(const std::string& folder, mode_t mode) {
    Result<NewFile> created = OpenNew(JoinPath(folder, kTemporaryPrefix), mode);
    if (!created) return created.GetError();
    return std::make_unique<TemporaryFile>(std::move(*created));
  }

  explicit TemporaryFile(NewFile created) : own(std::move(created)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!moved) unlink(own.name.c_str());
  }

  // Makes this file look like the one that it replaces. Only the administrator may give a file
  // away, and some disks know neither owner nor mode; that must not cost anybody a save.
  bool TakeOver(const struct stat& old) const {
    const int file = own.file->Get();
    const bool given = Retry([&] { return fchown(file, old.st_uid, old.st_gid); }) == 0;
    const mode_t mode = old.st_mode & (given ? 07777 : 0777);
    if (Retry([&] { return fchmod(file, mode); }) == 0) return true;
    return errno == EPERM || errno == EOPNOTSUPP;
  }

  // Flushed, the bytes are on the disk when this answers true.
  bool Fill(std::string_view bytes, FileKind kind) const {
    const int file = own.file->Get();
    return WriteAll(file, bytes) && (kind == FileKind::Scratch || Flush(file)) && own.file->Close();
  }

  bool MoveOver(const std::string& target) {
    moved = std::rename(own.name.c_str(), target.c_str()) == 0;
    return moved;
  }

  // Takes the name only if nothing has it.
  bool MoveBeside(const std::string& target) {
    if (link(own.name.c_str(), target.c_str()) == 0) return true;
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EMLINK) return false;
    // No hard links here: reserve the name first.
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

  NewFile own;
  bool moved = false;
};

std::string FolderToOpen(const std::string& name) {
  const std::string folder = FolderOf(name);
  return folder.empty() ? "." : folder;
}

// Returns whether a temporary file with these digits belongs to no process any more. Of one from
// another machine, or from before a restart, only the time tells. It is that of the last change of
// its status: what was given a second name may have been written long ago.
bool IsAbandoned(std::string_view digits, const struct stat& info) {
  const bool isOld = info.st_ctime + kAbandonedSeconds < std::time(nullptr);
  if (!digits.starts_with(MachineDigits())) return isOld;
  const std::string process(digits.substr(kMachineDigits, kProcessDigits));
  const auto id = static_cast<pid_t>(std::strtol(process.c_str(), nullptr, 16));
  return isOld || id <= 0 || (kill(id, 0) != 0 && errno == ESRCH);
}

// Removes temporary files in the folder that killed processes have left. No message and no result:
// what can't be removed now is removed at another time.
void RemoveAbandoned(const std::string& folder) {
  const auto close = [](DIR* open) { closedir(open); };
  const std::unique_ptr<DIR, decltype(close)> entries(opendir(folder.c_str()), close);
  if (!entries) return;
  while (const dirent* entry = readdir(entries.get())) {
    const std::string_view name = entry->d_name;
    if (!name.starts_with(kTemporaryPrefix)) continue;
    const std::string_view digits = name.substr(kTemporaryPrefix.size());
    const bool isOurs =
        digits.size() == kDigits && digits.find_first_not_of("0123456789abcdef") == digits.npos;
    const std::string path = JoinPath(folder, name);
    struct stat info {};
    if (isOurs && lstat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
        IsAbandoned(digits, info)) {
      unlink(path.c_str());
    }
  }
}

// Makes the new names in a folder durable, and tidies it up. A failure here is no failure of the
// write: the new file is in place, and after a crash the old one may be back, whole.
void FinishFolder(const std::string& folder) {
  const Descriptor opened(
      Retry([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (opened) (void)fsync(opened.Get());
  RemoveAbandoned(folder);
}

// Where a chain of symbolic links ends, whether or not anything stands there.
Result<std::string> FollowLinks(std::string name) {
  for (int depth = 0; depth < kLinkDepth; ++depth) {
    std::string text(4096, '\0');
    const ssize_t length = readlink(name.c_str(), text.data(), text.size());
    if (length < 0) return name;  // no link, or nothing there
    text.resize(static_cast<std::size_t>(length));
    name = text.starts_with('/') ? text : AddSeparator(FolderOf(name)) + text;
  }
  return ErrorOf(ELOOP, name);
}

// A file that is on the disk under a temporary name and is about to take the target's.
class Replacement {
 public:
  static Result<std::unique_ptr<Replacement>> Prepare(const std::string& target,
                                                      std::string_view bytes, FileKind kind);
  ~Replacement() {
    if (!former.empty()) unlink(former.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  // Links the present file under a second name, from which GiveBack restores it. Returns false,
  // with the reason in errno, if that fails.
  bool KeepFormer() {
    if (!exists) return true;
    const std::string name = JoinPath(FolderToOpen(place), kTemporaryPrefix) + OwnDigits();
    if (link(place.c_str(), name.c_str()) == 0) {
      former = name;
      return true;
    }
    // Without hard links there is no way back, which GiveBack reports.
    return errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS || errno == EMLINK;
  }
  bool TakeName() { return file->MoveOver(place); }
  // After TakeName: the name is again that of what had it before.
  bool GiveBack() {
    if (!exists) return unlink(place.c_str()) == 0;
    if (former.empty() || std::rename(former.c_str(), place.c_str()) != 0) return false;
    former.clear();
    return true;
  }
  std::string GetFolder() const { return FolderToOpen(place); }

 private:
  Replacement(std::string name, bool isThere, std::unique_ptr<TemporaryFile> temporary)
      : place(std::move(name)), exists(isThere), file(std::move(temporary)) {}

  std::string place;
  bool exists;
  std::unique_ptr<TemporaryFile> file;
  std::string former;  // further name of what had the name; empty if there is none
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
    exists = false;  // the link itself makes way
  }
  if (exists && !S_ISREG(old.st_mode)) {
    return ErrorOf(ErrorCode::NotAFile, "not a regular file", target);
  }
  if (exists && IsReadOnlyName(*place, old.st_mode)) {
    return ErrorOf(ErrorCode::ReadOnly, "the file is read-only", target);
  }
  // Nobody else gets to read the bytes before the old file's mode is on the new one.
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

bool IsReadOnlyName(const std::string& name, mode_t mode) {
  if ((mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return true;
  // Any other failure comes up again when the file is written, with its reason.
  return faccessat(AT_FDCWD, name.c_str(), W_OK, AT_EACCESS) != 0 &&
         CodeOf(errno) == ErrorCode::ReadOnly;
}

Status ReplaceFile(const std::string& target, std::string_view bytes, FileKind kind) {
  const Result<std::unique_ptr<Replacement>> ready = Replacement::Prepare(target, bytes, kind);
  if (!ready) return ready.GetError();
  if (!(*ready)->TakeName()) return ErrorOf(errno, target);
  if (kind != FileKind::Scratch) FinishFolder((*ready)->GetFolder());
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

}  // namespace tarn::posix
