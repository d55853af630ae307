#include "support/MemoryFileSystem.h"

#include <algorithm>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::testing {

namespace {

Error Fail(ErrorCode code, const std::string& path) {
  return {code, "failed in memory with code " + std::to_string(static_cast<int>(code)), path};
}

std::string WithoutEndSeparator(std::string path) {
  if (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

bool HoldsControlByte(std::string_view path) {
  return std::any_of(path.begin(), path.end(),
                     [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
}

}  // namespace

MemoryFileSystem::MemoryFileSystem(std::int64_t startSeconds) : now_(startSeconds) {
  AddFolders("/tmp");
}

// --- Test setup ---

void MemoryFileSystem::AddFile(const std::string& path, std::string_view bytes) {
  const std::lock_guard guard(lock_);
  const std::string absolute = Absolute(path);
  AddFolders(FolderOf(absolute));
  Entry& entry = entries_[absolute];
  entry.isFolder = false;
  entry.bytes = bytes;
  entry.modified = now_;
}

void MemoryFileSystem::AddFolder(const std::string& path) {
  const std::lock_guard guard(lock_);
  AddFolders(Absolute(path));
}

void MemoryFileSystem::Erase(const std::string& path) {
  const std::lock_guard guard(lock_);
  const std::string absolute = Absolute(path);
  std::erase_if(entries_, [&absolute](const auto& each) {
    return each.first == absolute || each.first.starts_with(AddSeparator(absolute));
  });
}

void MemoryFileSystem::SetReadOnly(const std::string& path, bool readOnly) {
  const std::lock_guard guard(lock_);
  entries_.at(Absolute(path)).readOnly = readOnly;
}

void MemoryFileSystem::MapDrive(char letter, const std::string& folder) {
  const std::lock_guard guard(lock_);
  drives_[FoldCase(std::string_view(&letter, 1))[0]] = Absolute(folder);
}

void MemoryFileSystem::Advance(std::int64_t seconds) {
  const std::lock_guard guard(lock_);
  now_ += seconds;
}

// --- Inspection ---

std::optional<std::string> MemoryFileSystem::BytesOf(const std::string& path) const {
  const std::lock_guard guard(lock_);
  const Entry* file = FileAt(path);
  return file == nullptr ? std::nullopt : std::optional(file->bytes);
}

std::optional<std::int64_t> MemoryFileSystem::ModifiedOf(const std::string& path) const {
  const std::lock_guard guard(lock_);
  const Entry* file = FileAt(path);
  return file == nullptr ? std::nullopt : std::optional(file->modified);
}

std::vector<std::string> MemoryFileSystem::AllFiles() const {
  const std::lock_guard guard(lock_);
  std::vector<std::string> names;
  for (const auto& [name, entry] : entries_) {
    if (!entry.isFolder) names.push_back(name);
  }
  return names;
}

std::vector<std::string> MemoryFileSystem::Operations(std::string_view verb) const {
  const std::lock_guard guard(lock_);
  std::vector<std::string> lines = record_;
  std::erase_if(lines, [verb](const std::string& line) {
    return !verb.empty() && !line.starts_with(std::string(verb) + " ");
  });
  return lines;
}

std::vector<std::string> MemoryFileSystem::TakeOperations() {
  const std::lock_guard guard(lock_);
  return std::exchange(record_, {});
}

// --- Failures ---

void MemoryFileSystem::FailOn(std::string_view verb, const std::string& path, ErrorCode code,
                              std::size_t spared) {
  const std::lock_guard guard(lock_);
  failures_.push_back({std::string(verb), path.empty() ? "" : Absolute(path), code, spared});
}

void MemoryFileSystem::ClearFailures() {
  const std::lock_guard guard(lock_);
  failures_.clear();
}

ErrorCode MemoryFileSystem::FailureFor(std::string_view verb, const std::string& path) {
  for (auto& failure : failures_) {
    const bool isMeant = (failure.verb.empty() || failure.verb == verb) &&
                         (failure.path.empty() || failure.path == path);
    if (!isMeant) continue;
    if (failure.spared == 0) return failure.code;
    --failure.spared;
  }
  return ErrorCode::None;
}

// --- Paths ---

// Returns an empty string for a path on a drive that is not mapped.
std::string MemoryFileSystem::Absolute(const std::string& path) const {
  if (HasDrive(path)) {
    const auto drive = drives_.find(FoldCase(path.substr(0, 1))[0]);
    if (drive == drives_.end()) return {};
    const std::string inside = CanonicalPath("/" + path.substr(2));
    return WithoutEndSeparator(CanonicalPath(AddSeparator(drive->second) + inside));
  }
  return WithoutEndSeparator(
      CanonicalPath(IsRelativePath(path) ? JoinPath(currentFolder_, path) : path));
}

// All existing paths that a path may refer to, in every folder of a matching name; only the exact
// one if it exists.
std::vector<std::string> MemoryFileSystem::Spellings(const std::string& absolute) const {
  if (absolute.empty() || entries_.contains(absolute)) return {absolute};
  std::vector<std::string> found;
  const std::string folder = FolderOf(absolute);
  if (folder == absolute) return found;
  for (const std::string& each : Spellings(folder)) {
    const std::string prefix = AddSeparator(each);
    const std::string wanted = prefix + FileNameOf(absolute);
    if (entries_.contains(wanted)) {
      found.push_back(wanted);
      continue;
    }
    for (auto entry = entries_.lower_bound(prefix);
         entry != entries_.end() && entry->first.starts_with(prefix); ++entry) {
      if (EqualNoCase(entry->first, wanted)) found.push_back(entry->first);
    }
  }
  return found;
}

// The path with each component spelled as on disk; a missing or ambiguous component is unchanged.
std::string MemoryFileSystem::OnDisk(const std::string& absolute) const {
  const std::vector<std::string> found = Spellings(absolute);
  if (found.size() == 1) return found.front();
  const std::string folder = FolderOf(absolute);
  if (folder == absolute) return absolute;
  return AddSeparator(OnDisk(folder)) + FileNameOf(absolute);
}

MemoryFileSystem::Place MemoryFileSystem::Begin(std::string_view verb, const std::string& path) {
  Place place;
  place.guard = std::unique_lock(lock_);
  place.path = OnDisk(Absolute(path));
  record_.push_back(std::string(verb) + " " + (place.path.empty() ? path : place.path));
  if (path.empty() || HoldsControlByte(path)) {
    place.failure = ErrorCode::InvalidName;
  } else if (place.path.empty()) {
    place.failure = ErrorCode::NotFound;
  } else {
    place.failure = FailureFor(verb, place.path);
  }
  if (place.failure != ErrorCode::None) return place;
  const auto found = entries_.find(place.path);
  if (found != entries_.end()) place.entry = &found->second;
  return place;
}

MemoryFileSystem::Place MemoryFileSystem::BeginFile(std::string_view verb, const std::string& path,
                                                    bool writes) {
  Place place = Begin(verb, path);
  if (place.failure != ErrorCode::None) return place;
  if (place.entry == nullptr) {
    place.failure = ErrorCode::NotFound;
  } else if (place.entry->isFolder) {
    place.failure = ErrorCode::NotAFile;
  } else if (writes && place.entry->readOnly) {
    place.failure = ErrorCode::ReadOnly;
  }
  return place;
}

ErrorCode MemoryFileSystem::MayChangeEntries(const std::string& folder) const {
  const auto found = entries_.find(folder);
  if (found == entries_.end() || !found->second.isFolder) return ErrorCode::NotFound;
  return found->second.readOnly ? ErrorCode::ReadOnly : ErrorCode::None;
}

const MemoryFileSystem::Entry* MemoryFileSystem::FileAt(const std::string& path) const {
  const auto found = entries_.find(Absolute(path));
  return found == entries_.end() || found->second.isFolder ? nullptr : &found->second;
}

void MemoryFileSystem::AddFolders(const std::string& absolute) {
  if (absolute != "/") AddFolders(FolderOf(absolute));
  Entry& entry = entries_[absolute];
  entry.isFolder = true;
}

Status MemoryFileSystem::Store(const std::string& absolute, std::string_view bytes) {
  const ErrorCode refused = MayChangeEntries(FolderOf(absolute));
  if (refused != ErrorCode::None) return Fail(refused, absolute);
  Entry& entry = entries_[absolute];
  entry.bytes = bytes;
  entry.modified = now_;
  return {};
}

// --- FileSystem ---

Result<bool> MemoryFileSystem::CheckExists(const std::string& path) {
  const Place place = Begin("exists", path);
  const bool isUnknown = place.failure != ErrorCode::None && place.failure != ErrorCode::NotFound &&
                         place.failure != ErrorCode::InvalidName;
  if (isUnknown) return Fail(ErrorCode::Io, place.path);
  return place.entry != nullptr;
}

bool MemoryFileSystem::IsFolder(const std::string& path) {
  const Place place = Begin("isfolder", path);
  return place.entry != nullptr && place.entry->isFolder;
}

std::string MemoryFileSystem::NameOnDisk(const std::string& path) {
  const std::unique_lock guard(lock_);
  const std::string name = OnDisk(Absolute(path));
  return entries_.contains(name) ? name : path;
}

std::optional<FileStatus> MemoryFileSystem::Examine(const std::string& path) {
  const Place place = Begin("examine", path);
  if (place.entry == nullptr || place.entry->isFolder) return std::nullopt;
  FileStatus status{place.entry->modified, place.entry->bytes.size()};
  status.otherSpelling = place.path != Absolute(path);
  return status;
}

bool MemoryFileSystem::IsReadOnly(const std::string& path) {
  const Place place = Begin("readonly", path);
  return place.entry == nullptr || place.entry->readOnly;
}

Result<std::string> MemoryFileSystem::ReadWholeFile(const std::string& path) {
  const Place place = BeginFile("read", path, false);
  if (place.failure != ErrorCode::None) return Fail(place.failure, path);
  return place.entry->bytes;
}

Status MemoryFileSystem::WriteWholeFile(const std::string& path, std::string_view bytes) {
  const Place place = Begin("write", path);
  if (place.failure != ErrorCode::None) return Fail(place.failure, path);
  if (place.entry != nullptr && place.entry->isFolder) return Fail(ErrorCode::NotAFile, path);
  if (place.entry != nullptr && place.entry->readOnly) return Fail(ErrorCode::ReadOnly, path);
  return Store(place.path, bytes);
}

Status MemoryFileSystem::WriteTail(const std::string& path, std::uint64_t expectedSize,
                                   std::uint64_t offset, std::string_view bytes) {
  const Place place = BeginFile("tail", path, true);
  if (place.failure != ErrorCode::None) return Fail(place.failure, path);
  if (place.entry->bytes.size() != expectedSize || offset > expectedSize) {
    return Fail(ErrorCode::Changed, path);
  }
  place.entry->bytes.resize(offset);
  place.entry->bytes += bytes;
  place.entry->modified = now_;
  return {};
}

Status MemoryFileSystem::RemoveFile(const std::string& path) {
  const Place place = BeginFile("remove", path, true);
  if (place.failure != ErrorCode::None) return Fail(place.failure, path);
  const ErrorCode refused = MayChangeEntries(FolderOf(place.path));
  if (refused != ErrorCode::None) return Fail(refused, path);
  entries_.erase(place.path);
  return {};
}

Status MemoryFileSystem::CopyFileTo(const std::string& from, const std::string& to) {
  const Place source = BeginFile("copy", from, false);
  const std::string target = OnDisk(Absolute(to));
  record_.back() += " " + (target.empty() ? to : target);
  if (source.failure != ErrorCode::None) return Fail(source.failure, from);
  if (to.empty() || HoldsControlByte(to)) return Fail(ErrorCode::InvalidName, to);
  if (target.empty()) return Fail(ErrorCode::NotFound, to);
  const ErrorCode wanted = FailureFor("copy", target);
  if (wanted != ErrorCode::None) return Fail(wanted, to);
  if (entries_.contains(target)) return Fail(ErrorCode::AlreadyExists, to);
  return Store(target, std::string(source.entry->bytes));
}

Status MemoryFileSystem::CreateFolders(const std::string& path) {
  const Place place = Begin("folders", path);
  if (place.failure != ErrorCode::None) return Fail(place.failure, path);
  std::string above = place.path;
  while (!entries_.contains(above)) above = FolderOf(above);
  if (!entries_.at(above).isFolder) return Fail(ErrorCode::NotAFile, path);
  if (above != place.path && entries_.at(above).readOnly) return Fail(ErrorCode::ReadOnly, path);
  AddFolders(place.path);
  return {};
}

Result<std::vector<FolderEntry>> MemoryFileSystem::ListFolder(const std::string& path) {
  const Place place = Begin("list", path);
  if (place.failure != ErrorCode::None) return Fail(place.failure, path);
  if (place.entry == nullptr || !place.entry->isFolder) return Fail(ErrorCode::NotFound, path);
  std::vector<FolderEntry> list;
  for (const auto& [name, entry] : entries_) {
    if (name != "/" && FolderOf(name) == place.path) {
      list.push_back({FileNameOf(name), entry.isFolder});
    }
  }
  return list;
}

std::string MemoryFileSystem::CurrentFolder() {
  const std::lock_guard guard(lock_);
  return currentFolder_;
}

bool MemoryFileSystem::SetCurrentFolder(const std::string& path) {
  const Place place = Begin("enter", path);
  if (place.entry == nullptr || !place.entry->isFolder) return false;
  currentFolder_ = place.path;
  return true;
}

std::string MemoryFileSystem::TemporaryFolder() {
  return "/tmp";
}

Result<std::string> MemoryFileSystem::ReserveName(const std::string& folder,
                                                  std::string_view prefix) {
  const Place place = Begin("reserve", folder);
  if (place.failure != ErrorCode::None) return Fail(place.failure, folder);
  std::string name;
  do {
    name = AddSeparator(place.path) + std::string(prefix) + std::to_string(++lastReserved_);
  } while (entries_.contains(name));
  const Status stored = Store(name, "");
  if (!stored) return stored.GetError();
  return name;
}

}  // namespace tarn::testing
