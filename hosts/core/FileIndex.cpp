#include "hosts/core/FileIndex.h"

#include <algorithm>
#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

void FileIndex::Begin(const std::string& folder) {
  start_ = folder;
  open_ = {folder};
  paths_.clear();
  count_ = 0;
  status_ = {};
  unread_.clear();
}

bool FileIndex::Continue(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (!open_.empty() && status_) {
    const std::string folder = std::move(open_.back());
    open_.pop_back();
    List(folder);
    if (std::chrono::steady_clock::now() >= end) break;
  }
  return !open_.empty() && status_;
}

void FileIndex::List(const std::string& folder) {
  const auto entries = files_.ListFolder(folder);
  if (!entries) {
    Error error{entries.GetError().code, entries.GetError().text, folder};
    if (folder == start_) {
      status_ = std::move(error);
    } else if (error.code != ErrorCode::NotFound) {
      unread_.insert(std::ranges::upper_bound(unread_, folder, {}, &Error::place),
                     std::move(error));
    }
    return;
  }
  count_ += entries->size();
  if (count_ > kMostEntries) {
    status_ = Error{ErrorCode::Unsupported, "it contains too many files", start_};
    return;
  }
  for (const FolderEntry& each : *entries) {
    const std::string path = JoinPath(folder, each.name);
    if (!each.isFolder) {
      paths_[FoldCase(each.name)].push_back(path);
    } else if (!each.name.starts_with('.') && !EqualNoCase(each.name, "build")) {
      // The target of a link is either listed by its own path, or is outside of the folder.
      if (!files_.ExamineLink(path)) open_.push_back(path);
    }
  }
}

const std::vector<std::string>& FileIndex::Find(const std::string& name) const {
  static const std::vector<std::string> kNone;
  const auto found = paths_.find(FoldCase(name));
  return found == paths_.end() ? kNone : found->second;
}

}  // namespace tarn::host
