#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

// A disk that records the questions put to it, with a hash of each answer. What a program that
// changes nothing concludes from a disk is a function of these answers: while the disk still gives
// the same ones, the conclusion holds, and the program need not run again.
//
// A file that is read counts as the question for its status. A status that is not older than the
// recording proves nothing: the file may change once more within the same tick of the clock. Files
// under names reserved by ReserveName() are the program's own and are not recorded.
//
// Thread-safe, as all file systems.
class RecordingFileSystem final : public FileSystem {
 public:
  // Borrows the disk.
  explicit RecordingFileSystem(FileSystem& disk);

  // Returns the recorded answers and locks for AreSameAnswers(); nullopt if they are not enough to
  // draw the same conclusion: something was written, a read failed, one question got two different
  // answers, or a status was too new.
  std::optional<std::string> GetAnswers() const;

  Result<bool> CheckExists(const std::string& path) override;
  bool IsFolder(const std::string& path) override;
  std::string NameOnDisk(const std::string& path) override;
  std::vector<std::string> SimilarNames(const std::string& path) override;
  std::string Canonical(const std::string& path) override;
  std::string ResolveLinks(const std::string& path) override;
  std::optional<FileStatus> Examine(const std::string& path) override;
  std::optional<FileStatus> ExamineExactly(const std::string& path) override;
  std::optional<FileStatus> ExamineFolder(const std::string& path) override;
  std::optional<FileStatus> ExamineLink(const std::string& path) override;
  std::string ReadLink(const std::string& path) override;
  bool IsSpecial(const std::string& path) override;
  bool IsProgram(const std::string& path) override;
  std::vector<std::optional<FileStatus>> ExamineMany(
      std::span<const char* const> paths, std::chrono::steady_clock::time_point deadline) override;
  bool CanRead(const std::string& path) override;
  bool IsReadOnly(const std::string& path) override;
  Status CheckWritable(const std::string& path) override;
  Result<std::string> ReadWholeFile(const std::string& path) override;
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
  std::int64_t Clock() override { return disk_.Clock(); }
  Result<std::unique_ptr<FileLock>> TryLock(const std::string& path, LockPurpose purpose) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::string& path) override;
  std::string CurrentFolder() override { return disk_.CurrentFolder(); }
  bool SetCurrentFolder(const std::string& path) override { return disk_.SetCurrentFolder(path); }
  std::string TemporaryFolder() override { return disk_.TemporaryFolder(); }
  Result<std::string> ReserveName(const std::string& folder, std::string_view prefix) override;

 private:
  void Note(char question, const std::string& path, std::uint64_t answer);
  void NoteStatus(char question, const std::string& path, const std::optional<FileStatus>& status);
  // Notes the version of a file or folder whose content was read, and whether that failed.
  void NoteRead(char question, const std::string& path, const Error* failure);
  // Notes that a program changes the file, unless it is its own.
  void NoteChange(const std::string& path);
  // Notes the removal of a file, which changes nothing if it doesn't exist.
  void NoteRemoval(const std::string& path);
  bool IsScratch(const std::string& path) const;

  FileSystem& disk_;
  const std::int64_t start_;             // Clock() when the recording began
  std::atomic<bool> isComplete_ = true;  // false: the answers are not enough
  mutable std::mutex lock_;              // protects what follows
  std::vector<std::string> scratch_;     // names from ReserveName
  std::vector<std::string> locked_;      // paths of build locks
  // By question and path, which form the key.
  std::unordered_map<std::string, std::uint64_t> answers_;
  // In the order of the questions.
  std::vector<const std::pair<const std::string, std::uint64_t>*> order_;
};

// Takes the recorded locks and asks the disk the recorded questions. Returns true if it gives the
// recorded answers, and false if a lock is taken or the record is damaged. Stops at the first
// difference.
bool AreSameAnswers(FileSystem& disk, std::string_view answers);

}  // namespace tarn
