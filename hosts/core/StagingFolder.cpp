#include "hosts/core/StagingFolder.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "new-";
constexpr std::chrono::hours kLongestUse(24);

void RemoveOld(FileSystem& files, const std::string& parent) {
  const auto entries = files.ListFolder(parent);
  if (!entries) return;
  const auto limit = fs::file_time_type::clock::now() - kLongestUse;
  for (const FolderEntry& each : *entries) {
    if (!each.isFolder || !each.name.starts_with(kPrefix)) continue;
    std::error_code failure;
    const fs::path path = JoinPath(parent, each.name);
    const auto changed = fs::last_write_time(path, failure);
    if (!failure && changed < limit) fs::remove_all(path, failure);
  }
}

// Sort key: files that are reached only through the project file come first, as rank 0.
int RankOf(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  return EqualNoCase(extension, ".tprj") ? 2 : EqualNoCase(extension, ".tapp") ? 1 : 0;
}

// Writes new files, and can remove them again together with the folders created for them.
class NewFileWriter {
 public:
  explicit NewFileWriter(FileSystem& fileSystem) : files_(fileSystem) {}

  Status Write(const NewFile& file) {
    const std::string parent = FolderOf(file.path);
    const std::size_t known = folders_.size();
    for (std::string folder = parent; !folder.empty() && !files_.Exists(folder);) {
      folders_.push_back(folder);
      const std::string above = FolderOf(folder);
      if (above == folder) break;
      folder = above;
    }
    std::reverse(folders_.begin() + static_cast<std::ptrdiff_t>(known), folders_.end());
    Status done = files_.CreateFolders(parent);
    if (done) done = files_.WriteOwnFile(file.path, file.text);
    if (done) written_.push_back(file.path);
    return done;
  }
  // A folder that is no longer empty because another process has put files into it is left alone.
  void TakeBack() {
    for (const std::string& path : written_) (void)files_.RemoveFile(path);
    std::error_code failure;
    for (auto each = folders_.rbegin(); each != folders_.rend(); ++each) fs::remove(*each, failure);
  }
  std::vector<std::string> TakeWritten() { return std::move(written_); }

 private:
  FileSystem& files_;
  std::vector<std::string> written_;
  std::vector<std::string> folders_;  // created folders, each after its parent
};

}  // namespace

Result<std::vector<std::string>> WriteNewFiles(FileSystem& files,
                                               const std::vector<NewFile>& list) {
  std::vector<const NewFile*> missing;
  for (const NewFile& each : list) {
    const Result<bool> exists = files.CheckExists(each.path);
    if (!exists) return exists.GetError();
    if (!*exists) {
      missing.push_back(&each);
      continue;
    }
    if (each.isShared) continue;
    const auto present = files.ReadWholeFile(each.path);
    const bool isFailure = !present && present.GetError().code != ErrorCode::NotAFile;
    if (isFailure) return present.GetError();
    if (!present || *present != each.text) {
      return Error{ErrorCode::AlreadyExists, "already exists", each.path};
    }
  }
  NewFileWriter writer(files);
  for (const NewFile* each : missing) {
    const Status done = writer.Write(*each);
    if (done) continue;
    writer.TakeBack();
    return Error{done.GetError().code, done.GetError().text, each->path};
  }
  return writer.TakeWritten();
}

StagingFolder::StagingFolder(FileSystem& fileSystem, const std::string& parent)
    : files_(fileSystem) {
  status_ = MakeIn(parent);
  const std::string other = files_.TemporaryFolder();
  if (!status_ && !other.empty() && MakeIn(other)) status_ = {};
}

Status StagingFolder::MakeIn(const std::string& parent) {
  RemoveOld(files_, parent);
  const Result<std::string> reserved = files_.ReserveName(parent, kPrefix);
  if (!reserved) return Error{reserved.GetError().code, reserved.GetError().text, parent};
  Status made = files_.RemoveFile(*reserved);
  if (made) made = files_.CreateNamedFolders(*reserved);
  if (made) path_ = *reserved;
  return made;
}

StagingFolder::~StagingFolder() {
  std::error_code failure;
  if (!path_.empty()) fs::remove_all(path_, failure);
}

Result<std::vector<NewFile>> StagingFolder::CollectFor(const std::string& folder,
                                                       const std::string& target) {
  std::vector<NewFile> found;
  std::vector<std::string> open = {folder};
  while (!open.empty()) {
    const std::string place = std::move(open.back());
    open.pop_back();
    const auto entries = files_.ListFolder(place);
    if (!entries) return entries.GetError();
    for (const FolderEntry& each : *entries) {
      const std::string path = JoinPath(place, each.name);
      if (each.isFolder) {
        open.push_back(path);
      } else if (ExtensionOf(path) != kLockExtension) {
        const auto text = files_.ReadWholeFile(path);
        if (!text) return text.GetError();
        found.push_back({target + path.substr(folder.size()), *text, RankOf(path) == 0});
      }
    }
  }
  std::stable_sort(found.begin(), found.end(), [](const NewFile& a, const NewFile& b) {
    return RankOf(a.path) < RankOf(b.path);
  });
  return found;
}

}  // namespace tarn::host
