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

// A disk in memory with a clock that stands still until a test moves it, a record of what was done
// and failures on demand. Names follow the rules of the real disk: exact first, else a unique match
// without regard to case; a path with a drive only where MapDrive was called. "/" and "/tmp" exist
// from the start; "/" is the current folder. May be used from any thread.
//
// The record has one line per operation, a verb and the absolute path with this machine's
// separators, spelled as the disk spells it when it is there:
//   exists, isfolder, examine, readonly, read, write, tail, remove, copy (source and target),
//   folders, list, enter (SetCurrentFolder), reserve
// An operation that failed is recorded too.
class MemoryFileSystem : public FileSystem {
 public:
  explicit MemoryFileSystem(std::int64_t startSeconds = 1'000'000);

  // --- Setting the scene; none of this is recorded, none of it fails. ---

  // Puts a file there, with its folders, stamped with the clock.
  void AddFile(const std::string& path, std::string_view bytes);
  void AddFolder(const std::string& path);
  // Takes away a file or a folder with all that it holds.
  void Erase(const std::string& path);
  // Marks a file or folder as read-only. A read-only folder takes and gives up no entries.
  void SetReadOnly(const std::string& path, bool readOnly = true);
  // From now on `letter`:\ is this folder.
  void MapDrive(char letter, const std::string& folder);

  void Advance(std::int64_t seconds);

  // --- Looking at the outcome; not recorded. ---

  // Nothing when no file of exactly this name is there.
  std::optional<std::string> BytesOf(const std::string& path) const;
  std::optional<std::int64_t> ModifiedOf(const std::string& path) const;
  // All files, in the order of their names.
  std::vector<std::string> AllFiles() const;

  // The recorded lines, all or those of one verb.
  std::vector<std::string> Operations(std::string_view verb = {}) const;
  // The recorded lines, and an empty record from now on.
  std::vector<std::string> TakeOperations();

  // --- Failures. ---

  // From now on operations with this verb on this absolute path fail, but for the first `spared`
  // ones; an empty verb or path stands for any. Those that answer yes or no answer as if nothing
  // were there.
  void FailOn(std::string_view verb, const std::string& path, ErrorCode code,
              std::size_t spared = 0);
  void ClearFailures();

  // --- FileSystem ---

  bool Exists(const std::string& path) override;
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
  // Where an operation takes place, and whether it may; nobody else has the disk meanwhile.
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
  // For what takes a file that is there.
  Place BeginFile(std::string_view verb, const std::string& path, bool writes);
  ErrorCode FailureFor(std::string_view verb, const std::string& path);
  ErrorCode MayChangeEntries(const std::string& folder) const;
  void AddFolders(const std::string& absolute);
  const Entry* FileAt(const std::string& path) const;
  Status Store(const std::string& absolute, std::string_view bytes);

  mutable std::mutex lock;
  std::map<std::string, Entry> entries;  // by absolute path
  std::map<char, std::string> drives;    // by small letter
  std::string currentFolder = "/";
  std::int64_t now;
  std::vector<std::string> record;
  std::vector<Failure> failures;
  std::size_t lastReserved = 0;
};

}  // namespace tarn::testing
