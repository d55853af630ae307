#include "platform/files/posix/PosixFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <stdexcept>

#include "platform/files/posix/AtomicWrite.h"
#include "platform/files/posix/FolderHandles.h"
#include "platform/files/posix/LockFile.h"
#include "platform/files/posix/PosixError.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

using posix::Descriptor;
using posix::ErrorOf;
using posix::ReadErrorOf;
using posix::Retry;

Error NotAFile(const std::string& path) {
  return ErrorOf(ErrorCode::NotAFile, "not a regular file", path);
}

std::int64_t ToNanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// The nanoseconds count forwards even before 1970, so the seconds are already rounded down.
FileStatus StatusOf(const struct stat& info) {
  return {info.st_mtim.tv_sec,  static_cast<std::uint64_t>(info.st_size),
          info.st_mtim.tv_nsec, ToNanoseconds(info.st_ctim),
          info.st_dev,          info.st_ino};
}

// Reads to the end regardless of `size`: a file may grow while it is read, and special files report
// no size.
Result<std::string> ReadAll(int file, std::uint64_t size, const std::string& path) {
  std::string bytes;
  try {
    bytes.resize(size + 1);  // one more, to detect the end without growing
    std::size_t filled = 0;
    for (;;) {
      const ssize_t done = read(file, bytes.data() + filled, bytes.size() - filled);
      if (done < 0 && errno == EINTR) continue;
      if (done < 0) return ReadErrorOf(errno, path);
      if (done == 0) break;
      filled += static_cast<std::size_t>(done);
      if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
    }
    bytes.resize(filled);
  } catch (const std::bad_alloc&) {
    return ErrorOf(ErrorCode::CannotOpen, "not enough memory", path);
  } catch (const std::length_error&) {
    return ErrorOf(ErrorCode::CannotOpen, "too large", path);
  }
  return bytes;
}

bool IsFolderEntry(const std::string& folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) return entry.d_type == DT_DIR;
  struct stat info {};
  return stat(JoinPath(folder, entry.d_name).c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace

PosixFileSystem::PosixFileSystem(posix::NameLookup::DriveLoader loadDrives)
    : names_(std::move(loadDrives)) {}

Result<bool> PosixFileSystem::CheckExists(const std::string& path) {
  struct stat info {};
  const Result<int> found =
      names_.Try(path, [&info](const char* name) { return stat(name, &info); });
  if (found) return true;
  const Error& error = found.GetError();
  if (error.code == ErrorCode::NotFound || error.code == ErrorCode::InvalidName) return false;
  return ErrorOf(ErrorCode::Io, error.text, path);
}

bool PosixFileSystem::IsSpecial(const std::string& path) {
  struct stat info {};
  const Result<std::string> name = names_.ToNative(path);
  return name && stat(name->c_str(), &info) == 0 && !S_ISREG(info.st_mode) &&
         !S_ISDIR(info.st_mode);
}

bool PosixFileSystem::IsFolder(const std::string& path) {
  struct stat info {};
  return names_.Try(path, [&info](const char* name) { return stat(name, &info); }) &&
         S_ISDIR(info.st_mode);
}

std::string PosixFileSystem::NameOnDisk(const std::string& path) {
  const Result<std::string> name = names_.Locate(path);
  return name ? *name : path;
}

std::vector<std::string> PosixFileSystem::SimilarNames(const std::string& path) {
  const Result<std::string> native = names_.ToNative(path);
  struct stat info {};
  if (!native || lstat(native->c_str(), &info) == 0) return {};
  std::vector<std::string> similar = names_.FindSimilar(*native);
  std::sort(similar.begin(), similar.end());
  return similar;
}

bool PosixFileSystem::IsLink(const std::string& path) {
  struct stat info {};
  return names_.Try(path, [&info](const char* name) { return lstat(name, &info); }) &&
         S_ISLNK(info.st_mode);
}

// Returns whether the parent of the folder is the one that the path text implies.
bool PosixFileSystem::CanStepUp(const std::string& folder) {
  const std::string last = FileNameOf(folder);
  if (last.empty()) return !folder.empty();  // a root, which ".." does not leave
  return last != ".." && !IsLink(folder);
}

std::string PosixFileSystem::Canonical(const std::string& path) {
  const std::size_t first = FindParentStep(path);
  if (first == std::string::npos || IsNetworkPath(path)) return CanonicalPath(path);
  std::string result = CanonicalPath(path.substr(0, first));
  if (result == ".") result.clear();
  if (!FileNameOf(FolderOf(result)).empty() && IsSeparator(result.back())) result.pop_back();
  const std::string rest = ReplaceAll(path.substr(first), "\\", "/");
  for (const std::string_view name : Split(rest, '/')) {
    if (name.empty() || name == ".") continue;
    result = name == ".." && CanStepUp(result) ? FolderOf(result) : JoinPath(result, name);
  }
  if (result.empty()) return ".";
  return IsSeparator(path.back()) ? AddSeparator(result) : result;
}

std::string PosixFileSystem::ResolveLinks(const std::string& path) {
  char* const resolved = realpath(NameOnDisk(path).c_str(), nullptr);
  if (resolved == nullptr) return path;
  std::string name = resolved;
  std::free(resolved);
  return name;
}

std::optional<FileStatus> PosixFileSystem::Examine(const std::string& path) {
  struct stat info {};
  int attempts = 0;
  const auto attempt = [&](const char* name) { return ++attempts, stat(name, &info); };
  if (!names_.Try(path, attempt) || !S_ISREG(info.st_mode)) return std::nullopt;
  FileStatus status = StatusOf(info);
  status.otherSpelling = attempts > 1;
  return status;
}

std::optional<FileStatus> PosixFileSystem::ExamineExactly(const std::string& path) {
  struct stat info {};
  const Result<std::string> name = names_.ToNative(path);
  if (!name || stat(name->c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  return StatusOf(info);
}

std::optional<FileStatus> PosixFileSystem::ExamineFolder(const std::string& path) {
  struct stat info {};
  const Result<std::string> name = names_.ToNative(path);
  if (!name || stat(name->c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) return std::nullopt;
  return StatusOf(info);
}

std::optional<FileStatus> PosixFileSystem::ExamineLink(const std::string& path) {
  struct stat info {};
  const Result<std::string> name = names_.ToNative(path);
  if (!name || lstat(name->c_str(), &info) != 0 || !S_ISLNK(info.st_mode)) return std::nullopt;
  return StatusOf(info);
}

std::string PosixFileSystem::ReadLink(const std::string& path) {
  const Result<std::string> name = names_.ToNative(path);
  if (!name) return path;
  std::error_code failure;
  const std::filesystem::path target = std::filesystem::read_symlink(*name, failure);
  if (failure) return path;
  const std::filesystem::path folder = std::filesystem::path(*name).parent_path();
  const std::filesystem::path resolved =
      std::filesystem::weakly_canonical(folder / target, failure);
  return failure ? target.string() : resolved.string();
}

std::vector<std::optional<FileStatus>> PosixFileSystem::ExamineMany(
    std::span<const char* const> paths, std::chrono::steady_clock::time_point deadline) {
  std::vector<std::optional<FileStatus>> found;
  found.reserve(paths.size());
  posix::FolderHandles folders;
  struct stat info {};
  for (const char* path : paths) {
    if (posix::NameLookup::IsPlain(path) && folders.Stat(path, info) == 0) {
      found.push_back(S_ISREG(info.st_mode) ? std::optional(StatusOf(info)) : std::nullopt);
    } else {
      found.push_back(Examine(path));  // may exist with another spelling
    }
    if (std::chrono::steady_clock::now() >= deadline) break;
  }
  return found;
}

bool PosixFileSystem::CanRead(const std::string& path) {
  return static_cast<bool>(names_.Try(
      path, [](const char* name) { return faccessat(AT_FDCWD, name, R_OK, AT_EACCESS); }));
}

Status PosixFileSystem::CheckWritable(const std::string& path) {
  Status writable;
  const auto look = [&](const char* name) {
    struct stat info {};
    if (stat(name, &info) != 0) return -1;
    writable = posix::CheckWritableName(name, info.st_mode, path);
    return 0;
  };
  if (const Result<int> found = names_.Try(path, look); !found) return found.GetError();
  return writable;
}

bool PosixFileSystem::IsProgram(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         access(path.c_str(), X_OK) == 0;
}

bool PosixFileSystem::IsReadOnly(const std::string& path) {
  return !CheckWritable(path);
}

Result<std::string> PosixFileSystem::ReadFrom(const std::string& path, std::uint64_t offset) {
  // Without O_NONBLOCK, opening a pipe without a writer would block forever.
  const Result<int> opened = names_.Try(
      path, [](const char* name) { return open(name, O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
  if (!opened) {
    Error error = opened.GetError();
    const bool isThere = error.code == ErrorCode::ReadOnly || error.code == ErrorCode::Io;
    if (isThere) error.code = ErrorCode::CannotOpen;
    return error;
  }
  const Descriptor file(*opened);
  struct stat info {};
  if (fstat(file.Get(), &info) != 0) {
    return ErrorOf(ErrorCode::CannotOpen, ErrorOf(errno, path).text, path);
  }
  if (!S_ISREG(info.st_mode)) return NotAFile(path);
  const auto size = static_cast<std::uint64_t>(info.st_size);
  if (offset >= size && offset > 0) return std::string();
  if (offset > 0 && lseek(file.Get(), static_cast<off_t>(offset), SEEK_SET) < 0) {
    return ErrorOf(ErrorCode::Io, ErrorOf(errno, path).text, path);
  }
  return ReadAll(file.Get(), size - offset, path);
}

Status PosixFileSystem::WriteWholeFile(const std::string& path, std::string_view bytes) {
  const Result<std::string> target = names_.LocateOrCreate(path);
  if (!target) return target.GetError();
  return posix::ReplaceFile(*target, bytes, posix::FileKind::User);
}

Status PosixFileSystem::WriteOwnFile(const std::string& path, std::string_view bytes) {
  const Result<std::string> target = names_.LocateOrCreate(path);
  if (!target) return target.GetError();
  return posix::ReplaceFile(*target, bytes, posix::FileKind::Own);
}

Status PosixFileSystem::WriteFiles(std::span<const FileBytes> list) {
  std::vector<FileBytes> located;
  for (const FileBytes& each : list) {
    const Result<std::string> present = ReadWholeFile(each.path);
    if (present && *present == each.bytes) continue;
    const Result<std::string> target = names_.LocateOrCreate(each.path);
    if (!target) return Error{target.GetError().code, target.GetError().text, each.path};
    located.push_back({*target, each.bytes});
  }
  return posix::ReplaceFiles(located);
}

Status PosixFileSystem::WriteTail(const std::string& path, std::uint64_t expectedSize,
                                  std::uint64_t offset, std::string_view bytes) {
  const Result<FileStatus> written =
      WriteInPlace(path, {0, expectedSize}, TimeMatters::No, offset, bytes);
  if (!written) return written.GetError();
  return {};
}

Result<FileStatus> PosixFileSystem::ContinueFile(const std::string& path,
                                                 const FileStatus& expected, std::uint64_t offset,
                                                 std::string_view bytes) {
  return WriteInPlace(path, expected, TimeMatters::Yes, offset, bytes);
}

// Uses one open file for all checks and the write, so that the file cannot be replaced in between.
Result<FileStatus> PosixFileSystem::WriteInPlace(const std::string& path,
                                                 const FileStatus& expected, TimeMatters time,
                                                 std::uint64_t offset, std::string_view bytes) {
  const Result<int> opened = names_.Try(path, [](const char* name) {
    return open(name, O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
  });
  if (!opened) return ExamineLink(path) ? RefuseLink(path) : opened.GetError();
  Descriptor file(*opened);
  struct stat info {};
  if (fstat(file.Get(), &info) != 0) return ErrorOf(errno, path);
  if (!S_ISREG(info.st_mode)) return NotAFile(path);
  if ((info.st_mode & 0222) == 0) {
    return ErrorOf(ErrorCode::ReadOnly, "the file is read-only", path);
  }
  // Writing in place would also change the file's other names; replacing the file does not.
  if (info.st_nlink > 1) return ErrorOf(ErrorCode::Changed, "the file has other names", path);
  const FileStatus found = StatusOf(info);
  if (found.size != expected.size || offset > expected.size ||
      (time == TimeMatters::Yes && found.modifiedSeconds != expected.modifiedSeconds)) {
    return ErrorOf(ErrorCode::Changed, "the file has changed", path);
  }
  const std::uint64_t end = offset + bytes.size();
  if (!posix::WriteAll(file.Get(), bytes, static_cast<off_t>(offset)) ||
      (end < found.size &&
       Retry([&] { return ftruncate(file.Get(), static_cast<off_t>(end)); }) != 0) ||
      fstat(file.Get(), &info) != 0 || !file.Close()) {
    return ErrorOf(errno, path);
  }
  return StatusOf(info);
}

Status PosixFileSystem::WriteScratchFile(const std::string& path, std::string_view bytes) {
  const Result<std::string> target = names_.ToNative(path);
  if (!target) return target.GetError();
  return posix::ReplaceFile(*target, bytes, posix::FileKind::Scratch);
}

Status PosixFileSystem::RemoveScratchFile(const std::string& path) {
  const Result<std::string> name = names_.ToNative(path);
  if (!name) return name.GetError();
  return RemoveNamed(*name, path, ReadOnly::Refused);
}

Status PosixFileSystem::RemoveFile(const std::string& path) {
  const Result<std::string> name = names_.Locate(path);
  if (!name) return name.GetError();
  return RemoveNamed(*name, path, ReadOnly::Refused);
}

Status PosixFileSystem::RemoveOwnFile(const std::string& path) {
  const Result<std::string> name = names_.Locate(path);
  if (!name) return name.GetError();
  return RemoveNamed(*name, path, ReadOnly::Removed);
}

// `name` is the native name of `path`.
Status PosixFileSystem::RemoveNamed(const std::string& name, const std::string& path,
                                    ReadOnly readOnly) {
  struct stat info {};
  if (lstat(name.c_str(), &info) != 0) return ErrorOf(errno, path);
  if (!S_ISLNK(info.st_mode)) {
    if (!S_ISREG(info.st_mode)) return NotAFile(path);
    const Status writable = posix::CheckWritableName(name, info.st_mode, path);
    if (readOnly == ReadOnly::Refused && !writable) return writable;
  }
  if (unlink(name.c_str()) != 0) return ErrorOf(errno, path);
  return {};
}

Status PosixFileSystem::CopyFileTo(const std::string& from, const std::string& to) {
  struct stat info {};
  const Result<int> examined =
      names_.Try(from, [&info](const char* name) { return stat(name, &info); });
  if (!examined) return examined.GetError();
  const Result<std::string> bytes = ReadWholeFile(from);
  if (!bytes) return bytes.GetError();
  if (names_.Locate(to)) return ErrorOf(EEXIST, to);
  const Result<std::string> target = names_.LocateOrCreate(to);
  if (!target) return target.GetError();
  // The copy of a read-only file is meant to be edited.
  return posix::CreateNewFile(*target, *bytes, (info.st_mode & 0777) | S_IWUSR);
}

Status PosixFileSystem::CreateFolders(const std::string& path) {
  return CreateFolders(path, false);
}

Status PosixFileSystem::CreateNamedFolders(const std::string& path) {
  return CreateFolders(path, true);
}

Status PosixFileSystem::CreateFolders(const std::string& path, bool exactly) {
  const Result<std::string> native = names_.ToNative(path);
  if (!native) return native.GetError();
  std::string folder = Canonical(*native);
  if (folder.size() > 1 && folder.back() == kSeparator) folder.pop_back();
  const Result<std::string> made = EnsureFolder(folder, exactly);
  if (!made) return ErrorOf(made.GetError().code, made.GetError().text, path);
  return {};
}

// Returns the folder with the spelling used on disk; creates it and its parents where missing.
Result<std::string> PosixFileSystem::EnsureFolder(const std::string& native, bool exactly) {
  struct stat info {};
  std::string name = native;
  bool exists = stat(name.c_str(), &info) == 0;
  if (!exists && errno != ENOENT) return ErrorOf(errno, native);
  if (!exists && !exactly) {
    const std::optional<std::string> other = names_.FindOther(native);
    exists = other && stat(other->c_str(), &info) == 0;
    if (exists) name = *other;
  }
  if (exists) {
    if (S_ISDIR(info.st_mode)) return name;
    return ErrorOf(ErrorCode::NotAFile, "a file is in the way", native);
  }
  const std::string parent = FolderOf(native);
  if (!parent.empty()) {
    const Result<std::string> above = EnsureFolder(parent, exactly);
    if (!above) return above;
    name = JoinPath(*above, FileNameOf(native));
  }
  // Another process may create the same folder concurrently.
  if (mkdir(name.c_str(), 0777) != 0 && errno != EEXIST) return ErrorOf(errno, native);
  return name;
}

Status PosixFileSystem::SetModifiedTime(const std::string& path, std::int64_t seconds,
                                        std::int64_t nanoseconds) {
  const timespec times[2] = {{0, UTIME_OMIT}, {seconds, nanoseconds}};
  const Result<int> done =
      names_.Try(path, [&times](const char* name) { return utimensat(AT_FDCWD, name, times, 0); });
  return done ? Status() : Status(done.GetError());
}

// The kernel stamps files with this clock, which advances only with its ticks.
std::int64_t PosixFileSystem::Clock() {
  timespec now{};
  return clock_gettime(CLOCK_REALTIME_COARSE, &now) == 0 ? ToNanoseconds(now) : 0;
}

Result<std::unique_ptr<FileLock>> PosixFileSystem::TryLock(const std::string& path,
                                                           LockPurpose purpose) {
  const Result<std::string> named = names_.ToNative(path);
  if (!named) return named.GetError();
  // The exact name first: a lock file of similar name is a different lock.
  auto lock = posix::TryLockFile(*named, purpose);
  if (lock || lock.GetError().code != ErrorCode::NotFound) return lock;
  const Result<std::string> found = names_.LocateOrCreate(path);
  if (!found) return found.GetError();
  return posix::TryLockFile(*found, purpose);
}

Result<std::vector<FolderEntry>> PosixFileSystem::ListFolder(const std::string& path) {
  DIR* opened = nullptr;
  std::string folder;
  const Result<int> found = names_.Try(path, [&](const char* name) {
    folder = name;
    opened = opendir(name);
    return opened == nullptr ? -1 : 0;
  });
  if (!found) return found.GetError();
  const auto close = [](DIR* open) { closedir(open); };
  const std::unique_ptr<DIR, decltype(close)> entries(opened, close);
  std::vector<FolderEntry> list;
  errno = 0;
  while (const dirent* entry = readdir(entries.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") {
      list.push_back({std::string(name), IsFolderEntry(folder, *entry)});
    }
    errno = 0;
  }
  if (errno != 0) return ReadErrorOf(errno, path);
  std::sort(list.begin(), list.end(),
            [](const FolderEntry& a, const FolderEntry& b) { return a.name < b.name; });
  return list;
}

std::string PosixFileSystem::CurrentFolder() {
  std::error_code failure;
  return std::filesystem::current_path(failure).string();
}

bool PosixFileSystem::SetCurrentFolder(const std::string& path) {
  return static_cast<bool>(names_.Try(path, [](const char* name) { return chdir(name); }));
}

std::string PosixFileSystem::TemporaryFolder() {
  const std::string wanted = OrEmpty(std::getenv("TMPDIR"));
  if (wanted.starts_with(kSeparator) && IsFolder(wanted)) return wanted;
  return IsFolder("/tmp") ? "/tmp" : "";
}

Result<std::string> PosixFileSystem::ReserveName(const std::string& folder,
                                                 std::string_view prefix) {
  const std::string first = JoinPath(folder, std::string(prefix) + "0");
  const bool separated = std::any_of(prefix.begin(), prefix.end(), IsSeparator);
  const Result<std::string> native = names_.ToNative(first);
  if (!native) return native.GetError();
  if (separated) return ErrorOf(ErrorCode::InvalidName, "a prefix holds no separator", first);
  const Result<std::string> place = names_.LocateOrCreate(first);
  if (!place) return place.GetError();
  posix::RemoveAbandonedNames(FolderOf(*place), prefix);
  return posix::CreateReserved(FolderOf(*place), prefix);
}

}  // namespace tarn
