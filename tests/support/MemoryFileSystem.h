#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn::testing {

// In-memory file system with a manual clock, a record of its operations and injectable failures.
// Names follow the rules of the real disk: the exact name first, otherwise a unique
// case-insensitive match; a path with a drive only if MapDrive() was called. "/" and "/tmp" exist
// initially; "/" is the current folder. Thread-safe.
//
// The record has one line per operation: a verb and the absolute path with this platform's
// separators, spelled as on disk if it exists:
//   exists, isfolder, examine, readonly, read, write, tail, remove, copy (source and target),
//   folders, list, enter (SetCurrentFolder), reserve
// Failed operations are recorded, too.
class MemoryFileSystem : public FileSystem {
 public:
  explicit MemoryFileSystem(std::int64_t startSeconds = 1'000'000);

  // --- Test setup; not recorded, never fails ---

  // Creates a file with its folders; its modification time is that of the clock.
  void AddFile(const std::string& path, std::string_view bytes);
  void AddFolder(const std::string& path);
  // Removes a file, or a folder with its content.
  void Erase(const std::string& path);
  // Marks a file or folder as read-only. A read-only folder does not allow adding or removing
  // entries.
  void SetReadOnly(const std::string& path, bool readOnly = true);
  // Maps drive `letter` to the folder.
  void MapDrive(char letter, const std::string& folder);

  void Advance(std::int64_t seconds);

  // --- Inspection; not recorded ---

  // Return nullopt if there is no file of exactly this name.
  std::optional<std::string> BytesOf(const std::string& path) const;
  std::optional<std::int64_t> ModifiedOf(const std::string& path) const;
  // All files, sorted by name.
  std::vector<std::string> AllFiles() const;

  // The recorded lines, all or those of one verb.
  std::vector<std::string> Operations(std::string_view verb = {}) const;
  // Returns the recorded lines and clears the record.
  std::vector<std::string> TakeOperations();

  // --- Failures ---

  // Makes operations with this verb on this absolute path fail, except for the first `spared` ones;
  // an empty verb or path matches any. CheckExists() fails with Io; boolean queries behave as if
  // the file did not exist.
  void FailOn(std::string_view verb, const std::string& path, ErrorCode code,
              std::size_t spared = 0);
  void ClearFailures();

  // --- FileSystem ---

  Result<bool> CheckExists(const std::string& path) override;
  bool IsFolder(const std::string& path) override;
  std::optional<FileStatus> Examine(const std::string& path) override;
  bool IsReadOnly(const std::string& path) override;
  Result<std::string> ReadWholeFile(const std::string& path) override;
  Status WriteWholeFile(const std::string& path, std::string_view bytes) override;
  Status WriteTail(const std::string& path, std::uint64_t expectedSize, std::uint64_t offset,
                   std::string_view bytes) override;
  Status RemoveFile(const std::string& path) override;
  Status CopyFileTo(const std::string& from, const std::string& to) override;
  Status CreateFolders(const std::string& path) override;
  std::string NameOnDisk(const std::string& path) override;
  Result<std::vector<FolderEntry>> ListFolder(const std::string& path) override;
  std::string CurrentFolder() override;
  bool SetCurrentFolder(const std::string& path) override;
  std::string TemporaryFolder() override;
  Result<std::string> ReserveName(const std::string& folder, std::string_view prefix) override;

 private:
  struct Entry {
    bool isFolder = false;
    bool readOnly = false;
    std::string bytes;
    std::int64_t modified = 0;
  };
  struct Failure {
    std::string verb;
    std::string path;
    ErrorCode code = ErrorCode::None;
    std::size_t spared = 0;
  };
  // Target of an operation and whether it may proceed; holds the lock.
  struct Place {
    std::unique_lock<std::mutex> guard;
    std::string path;
    Entry* entry = nullptr;
    ErrorCode failure = ErrorCode::None;
  };

  std::string Absolute(const std::string& path) const;
  std::vector<std::string> Spellings(const std::string& absolute) const;
  std::string OnDisk(const std::string& absolute) const;
  Place Begin(std::string_view verb, const std::string& path);
  // Like Begin(), for operations that require an existing file.
  Place BeginFile(std::string_view verb, const std::string& path, bool writes);
  ErrorCode FailureFor(std::string_view verb, const std::string& path);
  ErrorCode MayChangeEntries(const std::string& folder) const;
  void AddFolders(const std::string& absolute);
  const Entry* FileAt(const std::string& path) const;
  Status Store(const std::string& absolute, std::string_view bytes);

  mutable std::mutex lock_;
  std::map<std::string, Entry> entries_;  // by absolute path
  std::map<char, std::string> drives_;    // by lower-case letter
  std::string currentFolder_ = "/";
  std::int64_t now_;
  std::vector<std::string> record_;
  std::vector<Failure> failures_;
  std::size_t lastReserved_ = 0;
};

}  // namespace tarn::testing
