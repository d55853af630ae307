#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Result.h"
#include "platform/files/WriteFiles.h"
#include "platform/paths/Paths.h"

namespace tarn {

// Status of a regular file.
struct FileStatus {
  std::int64_t modifiedSeconds = 0;  // last modification, whole seconds since 1970, rounded down
  std::uint64_t size = 0;            // bytes
  std::int64_t modifiedNanoseconds = 0;  // of the last modification, 0 to 999,999,999
  // Last change of content, name, owner or mode, which no program can set back: nanoseconds since
  // 1970. 0 if the file system does not tell.
  std::int64_t changed = 0;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  bool otherSpelling = false;  // found only without regard to letter case
};

// Returns whether both describe one file with one modification. `changed` is not compared: it also
// moves when only the mode or the number of links changes.
inline bool IsSameVersion(const FileStatus& a, const FileStatus& b) {
  return a.modifiedSeconds == b.modifiedSeconds && a.size == b.size &&
         a.modifiedNanoseconds == b.modifiedNanoseconds && a.device == b.device &&
         a.inode == b.inode;
}

// What a lock on a file is for. Locks for different purposes don't exclude each other.
enum class LockPurpose : std::uint8_t { Build, Edit };
// Of the lock file next to a project.
inline constexpr const char* kLockExtension = ".tlock";

// An exclusive lock among processes, held until it is destroyed or the process ends.
class FileLock {
 public:
  FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  virtual ~FileLock() = default;
};

struct FolderEntry {
  std::string name;
  bool isFolder = false;
};

// The disk, as everything above the platform layer sees it. Paths are those of Paths.h. A name
// that is not there exactly is looked up without regard to case, component by component, and a
// single match counts; a path with a drive is found only where a drive is mapped.
//
// All operations may be called from any thread. No operation leaves a file half written.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // A file or a folder is there, or whether one is can't be found out.
  virtual bool Exists(const std::string& path) = 0;
  virtual bool IsFolder(const std::string& path) = 0;
  // The path as the disk spells it, for what opens, watches or compares files by itself; unchanged
  // if nothing is there. Symbolic links are not followed.
  virtual std::string NameOnDisk(const std::string& path) { return path; }
  // All paths on the disk that differ from this one in letter case alone, if it is not there
  // itself. Several of them: which one is meant is unknown.
  virtual std::vector<std::string> SimilarNames(const std::string& /*path*/) { return {}; }
  // Like CanonicalPath, except that a ".." after a symbolic link stays in the result: it leads to
  // the parent of the link's target. Only a path with ".." costs a query.
  virtual std::string Canonical(const std::string& path) { return CanonicalPath(path); }
  // The path with every symbolic link on the way resolved; the path unchanged if nothing is there.
  virtual std::string ResolveLinks(const std::string& path) { return path; }
  // Nothing unless a regular file stands there and can be examined.
  virtual std::optional<FileStatus> Examine(const std::string& path) = 0;
  // Examine for exactly this spelling, which costs one query also if nothing is there.
  virtual std::optional<FileStatus> ExamineExactly(const std::string& path) {
    std::optional<FileStatus> status = Examine(path);
    if (status && status->otherSpelling) return std::nullopt;
    return status;
  }
  // Status of a folder, whose modification time moves when an entry comes or goes; nothing unless
  // there is a folder of exactly this name.
  virtual std::optional<FileStatus> ExamineFolder(const std::string& /*path*/) { return {}; }
  // Status of the symbolic link itself; nothing unless one of exactly this name is there.
  virtual std::optional<FileStatus> ExamineLink(const std::string& /*path*/) { return {}; }
  // Where a symbolic link leads, absolute; what links on the way lead to is resolved as far as it
  // is there. `path` if it is no link.
  virtual std::string ReadLink(const std::string& path) { return path; }
  // Examine for one path after the other, with the same answers; gives those for as many of the
  // first paths as there was time for until `deadline`, one at least unless there are none. What
  // lies in few folders is found faster than by single calls. No path is null.
  virtual std::vector<std::optional<FileStatus>> ExamineMany(
      std::span<const char* const> paths, std::chrono::steady_clock::time_point deadline) {
    std::vector<std::optional<FileStatus>> found;
    found.reserve(paths.size());
    for (const char* path : paths) {
      found.push_back(Examine(path));
      if (std::chrono::steady_clock::now() >= deadline) break;
    }
    return found;
  }
  // Returns whether the file or folder is there and this process may read it.
  virtual bool CanRead(const std::string& path) { return Exists(path); }
  // No write permission in the mode, or the machine refuses; true also for what does not exist.
  virtual bool IsReadOnly(const std::string& path) = 0;
  // Why a file or folder is read-only in that sense: ReadOnly, or the reason why it can't be
  // examined.
  virtual Status CheckWritable(const std::string& path) {
    return IsReadOnly(path) ? Error{ErrorCode::ReadOnly, "read-only", path} : Status();
  }

  // The whole file; fails with NotAFile for a folder, with CannotOpen for what cannot be looked
  // into at all, and with Io when reading breaks off.
  virtual Result<std::string> ReadWholeFile(const std::string& path) = 0;
  // Replaces or creates the file in one step: whoever looks, also after a crash or on a full disk,
  // sees the old bytes or the new ones. Keeps the mode bits, follows a symbolic link. Refuses a
  // read-only file.
  virtual Status WriteWholeFile(const std::string& path, std::string_view bytes) = 0;
  // Like WriteWholeFile, for a file whose name the program has chosen, such as a log or a copy: a
  // symbolic link in its place is refused, since whatever put it there chose what it leads to.
  virtual Status WriteOwnFile(const std::string& path, std::string_view bytes) {
    return ExamineLink(path) ? RefuseLink(path) : WriteWholeFile(path, bytes);
  }
  // Like ReadWholeFile, for such a file: what WriteOwnFile would refuse to replace is not read.
  Result<std::string> ReadOwnFile(const std::string& path) {
    if (ExamineLink(path)) return RefuseLink(path);
    return ReadWholeFile(path);
  }
  // WriteWholeFile for files that belong together: all are written, or none; one that holds its
  // bytes already is left alone. `place` of an error is the file that can't be written. Only a
  // process that is killed between the last steps leaves some of them written, the first ones of
  // the list.
  virtual Status WriteFiles(std::span<const FileBytes> list) { return WriteOneByOne(*this, list); }
  // Overwrites what lies behind `offset` with `bytes` and cuts the file there, without replacing
  // it. Fails with Changed unless the file is `expectedSize` bytes long and has no other name, and
  // refuses a symbolic link. For files that are kept current by their writer alone.
  virtual Status WriteTail(const std::string& path, std::uint64_t expectedSize,
                           std::uint64_t offset, std::string_view bytes) = 0;
  // Like WriteTail, and also fails with Changed unless the file has the time that it is expected to
  // have. Gives what an examination of the file tells afterwards.
  virtual Result<FileStatus> ContinueFile(const std::string& path, const FileStatus& expected,
                                          std::uint64_t offset, std::string_view bytes) {
    const std::optional<FileStatus> before = Examine(path);
    if (!before || before->size != expected.size ||
        before->modifiedSeconds != expected.modifiedSeconds) {
      return Error{ErrorCode::Changed, "the file has changed", path};
    }
    const Status written = WriteTail(path, expected.size, offset, bytes);
    if (!written) return written.GetError();
    const std::optional<FileStatus> after = Examine(path);
    if (!after) return Error{ErrorCode::Changed, "the file is gone", path};
    return *after;
  }
  // Like WriteWholeFile, for a file that nobody misses after a crash: it need not have reached the
  // disk, and a symbolic link is replaced instead of followed. Whoever writes one chose its name,
  // so no other spelling of it is looked for: folders of scratch files are large, and change so
  // fast that each look would be a new one.
  virtual Status WriteScratchFile(const std::string& path, std::string_view bytes) {
    return WriteWholeFile(path, bytes);
  }
  // Like RemoveFile, for a file by the very name that it was made with.
  virtual Status RemoveScratchFile(const std::string& path) { return RemoveFile(path); }
  // Refuses a read-only file and a folder.
  virtual Status RemoveFile(const std::string& path) = 0;
  // Like RemoveFile, for a file that this program has made: only its folder can keep it.
  virtual Status RemoveOwnFile(const std::string& path) { return RemoveFile(path); }
  // Never overwrites.
  virtual Status CopyFileTo(const std::string& from, const std::string& to) = 0;

  // Creates the folder and whatever of its parents is missing.
  virtual Status CreateFolders(const std::string& path) = 0;
  // Like CreateFolders, except that a folder of a similar name is left alone.
  virtual Status CreateNamedFolders(const std::string& path) { return CreateFolders(path); }
  // Sets the modification time of a file that exists.
  virtual Status SetModifiedTime(const std::string& path, std::int64_t /*seconds*/,
                                 std::int64_t /*nanoseconds*/) {
    return Error{ErrorCode::Unsupported, "times of files can't be set", path};
  }
  // The clock that the file system stamps files with: nanoseconds since 1970, no finer than the
  // stamps themselves. 0 if there is none to compare FileStatus::changed with.
  virtual std::int64_t Clock() { return 0; }
  // Takes the lock that the file `path` stands for, which is made if it isn't there, and stays.
  // Fails with Busy, and with the holder's process as the text, while another process or object
  // holds it. A holder that died holds nothing.
  virtual Result<std::unique_ptr<FileLock>> TryLock(const std::string& /*path*/,
                                                    LockPurpose /*purpose*/) {
    return std::make_unique<FileLock>();
  }
  // In the order of the names; "." and ".." left out.
  virtual Result<std::vector<FolderEntry>> ListFolder(const std::string& path) = 0;

  virtual std::string CurrentFolder() = 0;
  virtual bool SetCurrentFolder(const std::string& path) = 0;
  // Empty when the machine has none.
  virtual std::string TemporaryFolder() = 0;
  // A name in `folder` that starts with `prefix` and that no file has; the name was reserved by
  // creating the file, which the caller may remove or overwrite.
  virtual Result<std::string> ReserveName(const std::string& folder, std::string_view prefix) = 0;

  static Error RefuseLink(const std::string& path) {
    return {ErrorCode::NotAFile, "it is a symbolic link, which is not followed", path};
  }

  // The disk of this machine; lives as long as the process.
  static FileSystem& Native();
};

}  // namespace tarn
