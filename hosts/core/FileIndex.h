#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// Index of the files below a folder by name, in any letter case. Skips folders whose names begin
// with a dot and folders named "build", except for the start folder itself; links to folders are
// not followed.
class FileIndex {
 public:
  static constexpr std::size_t kMostEntries = 500'000;

  explicit FileIndex(FileSystem& fileSystem) : files_(fileSystem) {}

  // Starts listing everything below `folder` (an absolute path) and discards the previous index.
  void Begin(const std::string& folder);
  // Continues listing for about `time`. Returns false when listing is complete or can't continue.
  bool Continue(std::chrono::milliseconds time);
  // Result of the listing: an error if the folder itself can't be read, or if it has more than
  // kMostEntries entries. Unreadable subfolders are skipped; see GetUnread().
  const Status& GetStatus() const { return status_; }
  // The skipped subfolders, each with its path as `place`, sorted by path.
  const std::vector<Error>& GetUnread() const { return unread_; }
  // Returns the paths of all files with this name, in any letter case.
  const std::vector<std::string>& Find(const std::string& name) const;

 private:
  void List(const std::string& folder);

  FileSystem& files_;
  std::string start_;
  std::vector<std::string> open_;  // folders that are not listed yet
  std::size_t count_ = 0;
  Status status_;
  std::vector<Error> unread_;
  std::unordered_map<std::string, std::vector<std::string>> paths_;  // by folded name
};

}  // namespace tarn::host
