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
  std::int64_t modifiedNanoseconds = 0;  // fraction of the modification time, 0 to 999,999,999
  // Last change of content, name, owner or mode, in nanoseconds since 1970. Unlike the modification
  // time, no program can set it. 0 if the file system does not provide it.
  std::int64_t changed = 0;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  bool otherSpelling = false;  // found only by a case-insensitive search
};

// Returns whether both describe the same version of the same file. Ignores `changed`, which also
// moves when only the mode or the number of links changes.
inline bool IsSameVersion(const FileStatus& a, const FileStatus& b) {
  return a.modifiedSeconds == b.modifiedSeconds && a.size == b.size &&
         a.modifiedNanoseconds == b.modifiedNanoseconds && a.device == b.device &&
         a.inode == b.inode;
}

// Purpose of a lock on a file. Locks for different purposes don't exclude each other.
enum class LockPurpose : std::uint8_t { Build, Edit };
// Extension of the lock file next to a project.
inline constexpr const char* kLockExtension = ".tlock";

// An exclusive lock between processes, held until the object is destroyed or the process ends.
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

// Interface to the disk for everything above the platform layer. Paths follow the rules of Paths.h.
// If no file has exactly the given name, the name is searched case-insensitively, component by
// component, and used if exactly one entry matches. A path with a drive letter is found only if
// that drive is mapped.
//
// All operations are thread-safe. No operation leaves a partially written file.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // Returns whether the file or folder exists. Fails with Io and the OS's reason if that cannot be
  // determined, for example in a folder that this process may not search. For callers that would
  // create, overwrite or skip the file, or report it as missing. A dangling link does not exist.
  virtual Result<bool> CheckExists(const std::string& path) = 0;
  // Returns false only if the file or folder certainly does not exist. For callers whose next
  // operation on the file reports the reason anyway.
  bool Exists(const std::string& path) {
    const Result<bool> found = CheckExists(path);
    return !found || *found;
  }
  virtual bool IsFolder(const std::string& path) = 0;
  // Returns the path with the spelling used on disk, for callers that open, watch or compare files
  // themselves. Returns `path` unchanged if it does not exist. Does not follow symbolic links.
  virtual std::string NameOnDisk(const std::string& path) { return path; }
  // Returns all paths on disk that differ from `path` only in letter case, if `path` itself does
  // not exist. More than one result means that the name is ambiguous.
  virtual std::vector<std::string> SimilarNames(const std::string& /*path*/) { return {}; }
  // Like CanonicalPath(), except that a ".." after a symbolic link is preserved: it refers to the
  // parent of the link's target. Queries the disk only for a path with "..".
  virtual std::string Canonical(const std::string& path) { return CanonicalPath(path); }
  // Resolves all symbolic links in the path. Returns `path` unchanged if it does not exist.
  virtual std::string ResolveLinks(const std::string& path) { return path; }
  // Returns nullopt unless `path` is a regular file that can be examined.
  virtual std::optional<FileStatus> Examine(const std::string& path) = 0;
  // Like Examine(), but only for exactly this spelling. Costs one query even if the file does not
  // exist.
  virtual std::optional<FileStatus> ExamineExactly(const std::string& path) {
    std::optional<FileStatus> status = Examine(path);
    if (status && status->otherSpelling) return std::nullopt;
    return status;
  }
  // Status of a folder, whose modification time changes when an entry is added or removed. Returns
  // nullopt unless a folder of exactly this name exists.
  virtual std::optional<FileStatus> ExamineFolder(const std::string& /*path*/) { return {}; }
  // Status of the symbolic link itself. Returns nullopt unless a link of exactly this name exists.
  virtual std::optional<FileStatus> ExamineLink(const std::string& /*path*/) { return {}; }
  // Absolute target of a symbolic link, with the links in the target's own path resolved as far as
  // it exists. Returns `path` if it is not a link.
  virtual std::string ReadLink(const std::string& path) { return path; }
  // Returns true if something of exactly this name exists that is neither a regular file nor a
  // folder, such as a pipe or a device.
  virtual bool IsSpecial(const std::string& /*path*/) { return false; }
  // Returns true if this is a regular file of exactly this name that this process may execute.
  virtual bool IsProgram(const std::string& /*path*/) { return false; }
  // Batch version of Examine() with the same results. Returns the results of the first paths, as
  // many as could be examined before `deadline`, but at least one unless `paths` is empty. Faster
  // than single calls if the files are in few folders. No path may be null.
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
  // Returns whether the file or folder exists and this process may read it.
  virtual bool CanRead(const std::string& path) { return Exists(path); }
  // Returns true if the mode has no write permission or the OS denies write access, and also if the
  // file does not exist.
  virtual bool IsReadOnly(const std::string& path) = 0;
  // Reason why IsReadOnly() returns true for a file or folder: ReadOnly, or the error that prevents
  // its examination.
  virtual Status CheckWritable(const std::string& path) {
    return IsReadOnly(path) ? Error{ErrorCode::ReadOnly, "read-only", path} : Status();
  }

  // Returns the content of the file. Fails with NotAFile for a folder, with CannotOpen if the file
  // exists but cannot be opened, and with Io if a read fails midway.
  virtual Result<std::string> ReadWholeFile(const std::string& path) = 0;
  // Returns the content after the first `offset` bytes; empty if there is none. Fails like
  // ReadWholeFile().
  virtual Result<std::string> ReadFrom(const std::string& path, std::uint64_t offset) {
    Result<std::string> whole = ReadWholeFile(path);
    if (whole) whole->erase(0, offset);
    return whole;
  }
  // Atomically replaces or creates the file: readers, also after a crash or on a full disk, see
  // either the old or the new content. Preserves the mode bits and follows a symbolic link. Refuses
  // a read-only file.
  virtual Status WriteWholeFile(const std::string& path, std::string_view bytes) = 0;
  // Like WriteWholeFile(), for a file whose name was chosen by the program, such as a log or a
  // copy: fails if the name is a symbolic link, since another program may have chosen its target.
  virtual Status WriteOwnFile(const std::string& path, std::string_view bytes) {
    return ExamineLink(path) ? RefuseLink(path) : WriteWholeFile(path, bytes);
  }
  // Like ReadWholeFile(), for the same kind of file: does not read what WriteOwnFile() would refuse
  // to replace.
  Result<std::string> ReadOwnFile(const std::string& path) {
    if (ExamineLink(path)) return RefuseLink(path);
    return ReadWholeFile(path);
  }
  // Like WriteWholeFile() for files that belong together: writes all of them or none. A file that
  // already has the right content is not touched. `place` of an error is the file that cannot be
  // written. Only if the process is killed during the final renames can a part of the files be new,
  // in the order of the list.
  virtual Status WriteFiles(std::span<const FileBytes> list) { return WriteOneByOne(*this, list); }
  // Writes `bytes` at `offset` and truncates the file after them, in place. Fails with Changed
  // unless the file is exactly `expectedSize` bytes long and has no other hard link, and refuses a
  // symbolic link. For files that only their writer updates.
  virtual Status WriteTail(const std::string& path, std::uint64_t expectedSize,
                           std::uint64_t offset, std::string_view bytes) = 0;
  // Like WriteTail(), but also fails with Changed if the modification time differs from the
  // expected one. Returns the status of the file after the write.
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
  // Like WriteWholeFile(), for a temporary file that need not survive a crash: it is not flushed to
  // disk, and a symbolic link is replaced instead of followed. The name is used as is, without a
  // case-insensitive search: folders of scratch files are large and change so often that each
  // search would have to scan them again.
  virtual Status WriteScratchFile(const std::string& path, std::string_view bytes) {
    return WriteWholeFile(path, bytes);
  }
  // Like RemoveFile(), for exactly the name that the file was created with.
  virtual Status RemoveScratchFile(const std::string& path) { return RemoveFile(path); }
  // Fails for a read-only file and for a folder.
  virtual Status RemoveFile(const std::string& path) = 0;
  // Like RemoveFile(), for a file that this program has created: removes it even if it is
  // read-only, so only the permissions of its folder can prevent it.
  virtual Status RemoveOwnFile(const std::string& path) { return RemoveFile(path); }
  // Never overwrites an existing file.
  virtual Status CopyFileTo(const std::string& from, const std::string& to) = 0;

  // Creates the folder and its missing parents.
  virtual Status CreateFolders(const std::string& path) = 0;
  // Like CreateFolders(), but does not reuse a folder whose name differs only in case.
  virtual Status CreateNamedFolders(const std::string& path) { return CreateFolders(path); }
  // Sets the modification time of an existing file.
  virtual Status SetModifiedTime(const std::string& path, std::int64_t /*seconds*/,
                                 std::int64_t /*nanoseconds*/) {
    return Error{ErrorCode::Unsupported, "file times can't be set", path};
  }
  // Current time of the clock that the file system stamps files with: nanoseconds since 1970, with
  // the resolution of the stamps. 0 if there is no clock comparable with FileStatus::changed.
  virtual std::int64_t Clock() { return 0; }
  // Takes the lock represented by the file `path`, which is created if missing and never removed.
  // Does not block: fails with Busy, and with the holder's process in the error's text, while
  // another process or object holds it. The lock of a dead process is free. Fails with NotAFile,
  // and with the target in the error's text, for a symbolic link, which is not followed, and for
  // anything else that is not a regular file. Fails with ReadOnly only if nothing in the folder can
  // be written, with NotFound if there is no folder.
  virtual Result<std::unique_ptr<FileLock>> TryLock(const std::string& /*path*/,
                                                    LockPurpose /*purpose*/) {
    return std::make_unique<FileLock>();
  }
  // Returns the entries sorted by name, without "." and "..".
  virtual Result<std::vector<FolderEntry>> ListFolder(const std::string& path) = 0;

  virtual std::string CurrentFolder() = 0;
  virtual bool SetCurrentFolder(const std::string& path) = 0;
  // Empty if the system has none.
  virtual std::string TemporaryFolder() = 0;
  // Returns an unused name in `folder` that starts with `prefix`. The name is reserved by creating
  // an empty file, which the caller may remove or overwrite.
  virtual Result<std::string> ReserveName(const std::string& folder, std::string_view prefix) = 0;

  static Error RefuseLink(const std::string& path) {
    return {ErrorCode::NotAFile, "it is a symbolic link, which is not followed", path};
  }

  // Returns the disk of this system; lives as long as the process.
  static FileSystem& Native();
  // Makes Native() return `disk`, which must live as long as the process. To be called before
  // anything else asks for it.
  static void ReplaceNative(FileSystem& disk);
};

}  // namespace tarn
