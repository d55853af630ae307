#include "platform/files/posix/NameLookup.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <memory>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::posix {

namespace {

constexpr std::size_t kKeptFolders = 256;

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

DIR* OpenFolder(const std::string& folder) {
  DIR* opened = nullptr;
  Retry([&] {
    opened = opendir(folder.c_str());
    return opened == nullptr ? -1 : 0;
  });
  return opened;
}

// Calls `take` with the name of each entry of the folder.
template <class Take>
void ForEachEntry(const std::string& folder, const Take& take) {
  const auto close = [](DIR* open) { closedir(open); };
  const std::unique_ptr<DIR, decltype(close)> entries(OpenFolder(folder), close);
  if (!entries) return;
  while (const dirent* entry = readdir(entries.get())) take(std::string_view(entry->d_name));
}

// Returns whether the time is old enough that a later change of the folder is certain to get a
// different one. Time stamps have a granularity of some milliseconds, or of up to two seconds on
// file systems that store only whole seconds.
bool HasSettled(std::int64_t seconds, std::int64_t nanoseconds) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const std::int64_t margin = nanoseconds == 0 ? 2'100'000'000 : 20'000'000;
  const std::int64_t age = (now.tv_sec - seconds) * 1'000'000'000 + now.tv_nsec - nanoseconds;
  return age > margin;
}

void AddName(std::string& names, std::string_view name) {
  if (!names.empty()) names += '/';
  names += name;
}

// Entries matching the name case-insensitively, joined with "/".
std::string Scan(const std::string& folder, const std::string& name) {
  std::string matches;
  ForEachEntry(folder, [&](std::string_view entry) {
    if (EqualNoCase(entry, name)) AddName(matches, entry);
  });
  return matches;
}

// Like Scan(), and stores all entries by folded name.
std::string List(const std::string& folder, const std::string& name,
                 std::unordered_map<std::string, std::string>& names) {
  ForEachEntry(folder,
               [&names](std::string_view entry) { AddName(names[FoldCase(entry)], entry); });
  const auto found = names.find(FoldCase(name));
  return found == names.end() ? std::string() : found->second;
}

}  // namespace

bool NameLookup::IsPlain(std::string_view path) {
  if (path.empty() || HasDrive(path)) return false;
  return std::none_of(path.begin(), path.end(), [](char c) { return c == '\\' || IsControl(c); });
}

Result<std::string> NameLookup::ToNative(const std::string& path) {
  if (path.empty()) return ErrorOf(ErrorCode::InvalidName, "the name is empty", path);
  if (std::any_of(path.begin(), path.end(), IsControl)) {
    return ErrorOf(ErrorCode::InvalidName, "a name with a control character cannot be used", path);
  }
  if (IsNetworkPath(path)) {
    if (path[0] == kSeparator) return ReplaceAll(path, "\\", "/");
    return ErrorOf(ErrorCode::NotFound, "this network share is not mapped", path);
  }
  if (!HasDrive(path)) return ToNativeSeparators(path);
  std::call_once(drivesLoaded_, [this] {
    if (loadDrives_) drives_ = loadDrives_();
  });
  const auto drive = drives_.find(FoldCase(path.substr(0, 1))[0]);
  if (drive == drives_.end()) {
    return ErrorOf(ErrorCode::NotFound, "this drive is not mapped", path);
  }
  const std::size_t name = path.find_first_not_of("/\\", 2);
  const std::string inside = name == path.npos ? std::string() : path.substr(name);
  return AddSeparator(drive->second) + CanonicalPath("/" + inside).substr(1);
}

// A native path with a backslash may be meant as a file name that contains this byte, which is not
// supported. The error says so instead of claiming that the file does not exist.
Error NameLookup::Missing(const std::string& path) {
  if (path.starts_with('/') && path.find('\\') != path.npos) {
    return ErrorOf(ErrorCode::InvalidName, "a name with a backslash cannot be used", path);
  }
  struct stat info {};
  const Result<std::string> native = ToNative(path);
  if (native && lstat(native->c_str(), &info) == 0 && S_ISLNK(info.st_mode)) {
    return ErrorOf(ErrorCode::NotFound, "a link to a missing file", path);
  }
  return ErrorOf(ENOENT, path);
}

Result<std::string> NameLookup::Locate(const std::string& path) {
  Result<std::string> native = ToNative(path);
  if (!native) return native;
  struct stat info {};
  if (lstat(native->c_str(), &info) == 0) return native;
  if (errno != ENOENT) return ErrorOf(errno, path);
  std::optional<std::string> other = FindOther(*native);
  if (!other) return Missing(path);
  return std::move(*other);
}

Result<std::string> NameLookup::LocateOrCreate(const std::string& path) {
  Result<std::string> there = Locate(path);
  if (there) return there;
  Result<std::string> native = ToNative(path);
  if (!native) return native;
  const std::string name = FileNameOf(*native);
  if (name.empty()) return Missing(path);
  struct stat info {};
  const std::string folder = FolderOf(*native);
  if (folder.empty() || stat(folder.c_str(), &info) == 0) return native;
  if (errno != ENOENT) return ErrorOf(errno, path);
  const std::optional<std::string> other = FindOther(folder);
  if (!other) return Missing(path);
  return JoinPath(*other, name);
}

std::optional<std::string> NameLookup::FindOther(const std::string& native) {
  std::vector<std::string> similar = FindSimilar(native);
  if (similar.size() != 1) return std::nullopt;
  return std::move(similar.front());
}

std::vector<std::string> NameLookup::FindSimilar(const std::string& native) {
  std::size_t end = native.size();
  while (end > 1 && native[end - 1] == '/') --end;
  const std::string path = native.substr(0, end);
  const std::string name = FileNameOf(path);
  if (name.empty() || name == "." || name == "..") return {};
  const std::string folder = FolderOf(path);
  struct stat info {};
  if (stat(folder.empty() ? "." : folder.c_str(), &info) == 0) {
    return FindIn(folder, info, name);
  }
  if (errno != ENOENT) return {};
  std::vector<std::string> found;
  for (const std::string& other : FindSimilar(folder)) {
    if (stat(other.c_str(), &info) != 0) continue;
    for (std::string& each : FindIn(other, info, name)) found.push_back(std::move(each));
  }
  return found;
}

// `info` is the folder's.
std::vector<std::string> NameLookup::FindIn(const std::string& folder, const struct stat& info,
                                            const std::string& name) {
  if (!S_ISDIR(info.st_mode)) return {};
  const std::string names = Lookup(folder.empty() ? "." : folder, info, name);
  std::vector<std::string> found;
  for (const std::string_view each : Split(names, '/')) {
    if (!each.empty()) found.push_back(JoinPath(folder, each));
  }
  return found;
}

// Entries matching the name, joined with "/". `info` is the folder's.
std::string NameLookup::Lookup(const std::string& folder, const struct stat& info,
                               const std::string& name) {
  const FolderId id{info.st_dev, info.st_ino};
  Listing fresh{info.st_mtim.tv_sec, info.st_mtim.tv_nsec, false, {}};
  std::string match;
  const Memory memory = Recall(id, fresh, FoldCase(name), match);
  if (memory != Memory::Listed) {
    fresh.complete = memory == Memory::Scanned && HasSettled(fresh.seconds, fresh.nanoseconds);
    match = fresh.complete ? List(folder, name, fresh.names) : Scan(folder, name);
    const std::lock_guard guard(lock_);
    if (listings_.size() >= kKeptFolders && !listings_.contains(id)) listings_.clear();
    listings_[id] = std::move(fresh);
  }
  return match;
}

NameLookup::Memory NameLookup::Recall(const FolderId& id, const Listing& now,
                                      const std::string& folded, std::string& match) {
  const std::lock_guard guard(lock_);
  const auto kept = listings_.find(id);
  if (kept == listings_.end() || kept->second.seconds != now.seconds ||
      kept->second.nanoseconds != now.nanoseconds) {
    return Memory::None;
  }
  if (!kept->second.complete) return Memory::Scanned;
  const auto found = kept->second.names.find(folded);
  if (found != kept->second.names.end()) match = found->second;
  return Memory::Listed;
}

}  // namespace tarn::posix
