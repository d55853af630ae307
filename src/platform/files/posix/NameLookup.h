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

// From the paths of this system to the names of the machine.
//
// The exact name always goes first and costs nothing extra. Only after a miss is the folder looked
// at: its entries are compared without regard to case, and a single match is meant. Projects born
// on another system miss often and in the same folders, so a folder's entries are kept as long as
// its modification time stands still; a folder that changes between two misses (a build that fills
// it) is only scanned for the one name.
//
// May be used from any thread.
class NameLookup {
 public:
  // Folders by small drive letter.
  using DriveTable = std::map<char, std::string>;
  // Called once, at the first path with a drive; none: no drive is mapped.
  using DriveLoader = std::function<DriveTable()>;

  explicit NameLookup(DriveLoader driveLoader) : loadDrives(std::move(driveLoader)) {}

  // The path is a name of the machine as it stands: no drive, no backslash, no control byte.
  static bool IsPlain(std::string_view path);

  // Calls `attempt` with the exact name and, when that answers less than 0 with ENOENT, with the
  // one other spelling that is there. Its last answer, or the reason for none.
  template <class Attempt>
  Result<int> Try(const std::string& path, const Attempt& attempt);

  // The name that stands on the disk for this path, symbolic links not followed.
  Result<std::string> Locate(const std::string& path);
  // The same, or the name to create: a new one in a folder that is there.
  Result<std::string> LocateOrCreate(const std::string& path);
  // The name for a path whose folders may be missing too. Does not look at the disk.
  Result<std::string> ToNative(const std::string& path);
  // The single other spelling of a native name.
  std::optional<std::string> FindOther(const std::string& native);
  // All of them. Inside a folder that has the exact name no other folder is searched.
  std::vector<std::string> FindSimilar(const std::string& native);

 private:
  struct Listing {
    std::int64_t seconds = 0;  // the folder's modification time
    std::int64_t nanoseconds = 0;
    bool complete = false;  // false: the folder was scanned once and `names` is empty
    std::unordered_map<std::string, std::string> names;  // by folded name, "/" between several
  };
  enum class Memory { None, Scanned, Listed };
  using FolderId = std::pair<dev_t, ino_t>;

  Error Missing(const std::string& path);
  std::vector<std::string> FindIn(const std::string& folder, const struct stat& info,
                                  const std::string& name);
  std::string Lookup(const std::string& folder, const struct stat& info, const std::string& name);
  Memory Recall(const FolderId& id, const Listing& now, const std::string& folded,
                std::string& match);

  DriveLoader loadDrives;
  std::once_flag drivesLoaded;
  DriveTable drives;
  std::mutex lock;  // over `listings` alone; the disk is never waited for inside
  std::map<FolderId, Listing> listings;
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
