#pragma once

#include "platform/files/FileSystem.h"
#include "platform/files/posix/NameLookup.h"

namespace tarn {

// FileSystem of a POSIX system. See NameLookup for the search of names.
class PosixFileSystem : public FileSystem {
 public:
  // `loadDrives` returns the folders that are mapped as drives; called at the first path with a
  // drive.
  explicit PosixFileSystem(posix::NameLookup::DriveLoader loadDrives = {});

  Result<bool> CheckExists(const std::string& path) override;
  bool IsFolder(const std::string& path) override;
  bool IsSpecial(const std::string& path) override;
  bool IsProgram(const std::string& path) override;
  std::string NameOnDisk(const std::string& path) override;
  std::vector<std::string> SimilarNames(const std::string& path) override;
  std::string Canonical(const std::string& path) override;
  std::string ResolveLinks(const std::string& path) override;
  // A plain path with the exact name costs one system call, no lock and no allocation.
  std::optional<FileStatus> Examine(const std::string& path) override;
  std::optional<FileStatus> ExamineExactly(const std::string& path) override;
  std::optional<FileStatus> ExamineFolder(const std::string& path) override;
  std::optional<FileStatus> ExamineLink(const std::string& path) override;
  std::string ReadLink(const std::string& path) override;
  std::vector<std::optional<FileStatus>> ExamineMany(
      std::span<const char* const> paths, std::chrono::steady_clock::time_point deadline) override;
  bool CanRead(const std::string& path) override;
  bool IsReadOnly(const std::string& path) override;
  Status CheckWritable(const std::string& path) override;
  Result<std::string> ReadWholeFile(const std::string& path) override { return ReadFrom(path, 0); }
  Result<std::string> ReadFrom(const std::string& path, std::uint64_t offset) override;
  Status WriteWholeFile(const std::string& path, std::string_view bytes) override;
  Status WriteOwnFile(const std::string& path, std::string_view bytes) override;
  Status WriteFiles(std::span<const FileBytes> list) override;
  Status WriteTail(const std::string& path, std::uint64_t expectedSize, std::uint64_t offset,
                   std::string_view bytes) override;
  Result<FileStatus> ContinueFile(const std::string& path, const FileStatus& expected,
                                  std::uint64_t offset, std::string_view bytes) override;
  Status WriteScratchFile(const std::string& path, std::string_view bytes) override;
  Status RemoveScratchFile(const std::string& path) override;
  Status RemoveFile(const std::string& path) override;
  Status RemoveOwnFile(const std::string& path) override;
  Status CopyFileTo(const std::string& from, const std::string& to) override;
  Status CreateFolders(const std::string& path) override;
  Status CreateNamedFolders(const std::string& path) override;
  Status SetModifiedTime(const std::string& path, std::int64_t seconds,
                         std::int64_t nanoseconds) override;
  std::int64_t Clock() override;
  Result<std::unique_ptr<FileLock>> TryLock(const std::string& path, LockPurpose purpose) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::string& path) override;
  std::string CurrentFolder() override;
  bool SetCurrentFolder(const std::string& path) override;
  std::string TemporaryFolder() override;
  // Also removes files that are named after such a name of a process that is gone, with an
  // extension added.
  Result<std::string> ReserveName(const std::string& folder, std::string_view prefix) override;

 private:
  // Selects if WriteInPlace() also compares the modification time.
  enum class TimeMatters { No, Yes };

  enum class ReadOnly : std::uint8_t { Refused, Removed };
  static Status RemoveNamed(const std::string& name, const std::string& path, ReadOnly readOnly);
  Result<FileStatus> WriteInPlace(const std::string& path, const FileStatus& expected,
                                  TimeMatters time, std::uint64_t offset, std::string_view bytes);
  bool IsLink(const std::string& path);
  bool CanStepUp(const std::string& folder);
  Status CreateFolders(const std::string& path, bool exactly);
  Result<std::string> EnsureFolder(const std::string& native, bool exactly);

  posix::NameLookup names_;
};

}  // namespace tarn
