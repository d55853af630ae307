// Writes to files that one writer keeps current by itself, often and for nobody who would miss
// them after a crash: each costs as few system calls as it can, and none waits for the disk.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/files/posix/AtomicWrite.h"
#include "platform/files/posix/PosixError.h"
#include "platform/files/posix/PosixFileSystem.h"
#include "platform/paths/Paths.h"

namespace tarn {

namespace {

using posix::Descriptor;
using posix::ErrorOf;

FileStatus StatusOf(const struct stat& info) {
  return {info.st_mtim.tv_sec, static_cast<std::uint64_t>(info.st_size)};
}

// Why this file must not be written; succeeds for one that may.
Status Refusal(const struct stat& info, const std::string& path) {
  if (!S_ISREG(info.st_mode)) return ErrorOf(ErrorCode::NotAFile, "not a regular file", path);
  if ((info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
    return ErrorOf(ErrorCode::ReadOnly, "the file is read-only", path);
  }
  return {};
}

bool WriteAndCut(int file, std::uint64_t size, std::uint64_t offset, std::string_view bytes) {
  if (!posix::WriteAll(file, bytes, static_cast<off_t>(offset))) return false;
  const std::uint64_t end = offset + bytes.size();
  return end >= size || ftruncate(file, static_cast<off_t>(end)) == 0;
}

// `expectedSeconds` is null when any time will do.
Result<FileStatus> ReplaceTail(int opened, const std::string& path, std::uint64_t expectedSize,
                               const std::int64_t* expectedSeconds, std::uint64_t offset,
                               std::string_view bytes) {
  Descriptor file(opened);
  struct stat info {};
  if (fstat(file.Get(), &info) != 0) return ErrorOf(errno, path);
  const Status refused = Refusal(info, path);
  if (!refused) return refused.GetError();
  const FileStatus found = StatusOf(info);
  if (found.size != expectedSize || offset > expectedSize ||
      (expectedSeconds != nullptr && found.modifiedSeconds != *expectedSeconds)) {
    return ErrorOf(ErrorCode::Changed, "the file has changed", path);
  }
  if (!WriteAndCut(file.Get(), found.size, offset, bytes) || fstat(file.Get(), &info) != 0 ||
      !file.Close()) {
    return ErrorOf(errno, path);
  }
  return StatusOf(info);
}

int OpenToWrite(const char* name) {
  return open(name, O_WRONLY | O_CLOEXEC | O_NONBLOCK);
}

}  // namespace

Status PosixFileSystem::WriteTail(const std::string& path, std::uint64_t expectedSize,
                                  std::uint64_t offset, std::string_view bytes) {
  const Result<int> opened = names.Try(path, OpenToWrite);
  if (!opened) return opened.GetError();
  const Result<FileStatus> written =
      ReplaceTail(*opened, path, expectedSize, nullptr, offset, bytes);
  return written ? Status() : Status(written.GetError());
}

Result<FileStatus> PosixFileSystem::ContinueFile(const std::string& path,
                                                 const FileStatus& expected, std::uint64_t offset,
                                                 std::string_view bytes) {
  const Result<int> opened = names.Try(path, OpenToWrite);
  if (!opened) return opened.GetError();
  return ReplaceTail(*opened, path, expected.size, &expected.modifiedSeconds, offset, bytes);
}

Status PosixFileSystem::WriteScratchFile(const std::string& path, std::string_view bytes) {
  const Result<std::string> target = names.LocateOrCreate(path);
  if (!target) return target.GetError();
  struct stat old {};
  if (lstat(target->c_str(), &old) == 0 && !S_ISLNK(old.st_mode)) {
    Status refused = Refusal(old, path);
    if (!refused) return refused;
  }
  const std::string folder = FolderOf(*target);
  const Result<std::string> reserved =
      posix::CreateReserved(folder.empty() ? "." : folder, ".tarn-");
  if (!reserved) return reserved.GetError();
  Descriptor file(open(reserved->c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC));
  if (file && posix::WriteAll(file.Get(), bytes) && file.Close() &&
      std::rename(reserved->c_str(), target->c_str()) == 0) {
    return {};
  }
  const int reason = errno;
  unlink(reserved->c_str());
  return ErrorOf(reason, path);
}

}  // namespace tarn
