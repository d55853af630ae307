#include "hosts/frame/StagingFolder.h"

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

// 0 for what only the project's name leads to.
int RankOf(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  return EqualNoCase(extension, ".tprj") ? 2 : EqualNoCase(extension, ".tapp") ? 1 : 0;
}

Status WriteWithFolder(FileSystem& files, const NewFile& file) {
  const Status made = files.CreateFolders(FolderOf(file.path));
  return made ? files.WriteOwnFile(file.path, file.text) : made;
}

}  // namespace

Result<std::vector<std::string>> WriteNewFiles(FileSystem& files,
                                               const std::vector<NewFile>& list) {
  std::vector<const NewFile*> missing;
  for (const NewFile& each : list) {
    if (!files.Exists(each.path)) {
      missing.push_back(&each);
      continue;
    }
    if (each.isShared) continue;
    const auto present = files.ReadWholeFile(each.path);
    if (!present || *present != each.text) {
      return Error{ErrorCode::AlreadyExists, "is there already", each.path};
    }
  }
  std::vector<std::string> written;
  for (const NewFile* each : missing) {
    const Status done = WriteWithFolder(files, *each);
    if (done) {
      written.push_back(each->path);
      continue;
    }
    for (const std::string& path : written) (void)files.RemoveFile(path);
    return Error{done.GetError().code, done.GetError().text, each->path};
  }
  return written;
}

StagingFolder::StagingFolder(FileSystem& fileSystem, const std::string& parent)
    : files_(fileSystem) {
  RemoveOld(files_, parent);
  const Result<std::string> reserved = files_.ReserveName(parent, kPrefix);
  if (!reserved) {
    status_ = reserved.GetError();
    return;
  }
  status_ = files_.RemoveFile(*reserved);
  if (status_) status_ = files_.CreateNamedFolders(*reserved);
  if (status_) path_ = *reserved;
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
