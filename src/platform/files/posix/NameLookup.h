#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/Result.h"
#include "platform/files/posix/PosixError.h"

namespace tarn::posix {

// Maps the paths of this system to native file names, with a case-insensitive fallback.
//
// The exact name is always tried first, at no extra cost. Only after a miss are the entries of the
// folder compared case-insensitively; a single match is used. Projects created on another system
// miss often and in the same folders, so the entries of a folder are cached while its modification
// time is unchanged. A folder that has changed between two misses (such as one that a build fills)
// is only scanned for the one name.
//
// Thread-safe.
class NameLookup {
 public:
  // Folders by lower-case drive letter.
  using DriveTable = std::map<char, std::string>;
  // Called once, at the first path with a drive; without a loader no drive is mapped.
  using DriveLoader = std::function<DriveTable()>;

  explicit NameLookup(DriveLoader driveLoader) : loadDrives_(std::move(driveLoader)) {}

  // Returns true if the path is usable as a native name unchanged: no drive, no backslash, no
  // control byte.
  static bool IsPlain(std::string_view path);

  // Calls `attempt` with the exact name and, if that returns a negative value with ENOENT, with the
  // only other spelling that exists. Returns the last result of `attempt`, or an error.
  template <class Attempt>
  Result<int> Try(const std::string& path, const Attempt& attempt);

  // Returns the name on disk for this path. Does not follow symbolic links.
  Result<std::string> Locate(const std::string& path);
  // Like Locate(), but returns the name to create if only the file itself is missing.
  Result<std::string> LocateOrCreate(const std::string& path);
  // Returns the native name for a path whose folders need not exist. Does not query the disk.
  Result<std::string> ToNative(const std::string& path);
  // Returns the only other spelling of a native name that exists.
  std::optional<std::string> FindOther(const std::string& native);
  // Returns all other spellings that exist. If a folder has the exact name, folders of similar
  // names are not searched.
  std::vector<std::string> FindSimilar(const std::string& native);

 private:
  struct Listing {
    std::int64_t seconds = 0;  // modification time of the folder
    std::int64_t nanoseconds = 0;
    bool complete = false;  // false: the folder was scanned once and `names` is empty
    std::unordered_map<std::string, std::string> names;  // by folded name, joined with "/"
  };
  // State of the cache for a folder: nothing, scanned once at its current modification time, or all
  // entries.
  enum class Memory { None, Scanned, Listed };
  using FolderId = std::pair<dev_t, ino_t>;

  Error Missing(const std::string& path);
  std::vector<std::string> FindIn(const std::string& folder, const struct stat& info,
                                  const std::string& name);
  std::string Lookup(const std::string& folder, const struct stat& info, const std::string& name);
  Memory Recall(const FolderId& id, const Listing& now, const std::string& folded,
                std::string& match);

  DriveLoader loadDrives_;
  std::once_flag drivesLoaded_;
  DriveTable drives_;
  std::mutex lock_;  // guards only `listings`; never held during disk access
  std::map<FolderId, Listing> listings_;
};

template <class Attempt>
Result<int> NameLookup::Try(const std::string& path, const Attempt& attempt) {
  std::string converted;
  const std::string* name = &path;
  if (!IsPlain(path)) {
    Result<std::string> native = ToNative(path);
    if (!native) return native.GetError();
    converted = std::move(*native);
    name = &converted;
  }
  int answer = Retry([&] { return attempt(name->c_str()); });
  if (answer < 0 && errno == ENOENT) {
    const std::optional<std::string> other = FindOther(*name);
    if (!other) return Missing(path);
    answer = Retry([&] { return attempt(other->c_str()); });
  }
  if (answer < 0 && errno == ENOENT) return Missing(path);
  if (answer < 0) return ErrorOf(errno, path);
  return answer;
}

}  // namespace tarn::posix
