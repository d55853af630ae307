#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// The files below a folder by their names. Folders whose names begin with a dot, and those named
// "build", are passed over unless they are the folder itself, and so are links to folders.
class FileIndex {
 public:
  static constexpr std::size_t kMostEntries = 500'000;

  explicit FileIndex(FileSystem& fileSystem) : files_(fileSystem) {}

  // Begins to list everything below `folder` (absolute); what was listed before is dropped.
  void Begin(const std::string& folder);
  // Goes on for about so long. Returns false once everything is listed, or nothing more can be.
  bool Continue(std::chrono::milliseconds time);
  // After that: fails if the folder itself can't be read, or if more than kMostEntries are below
  // it. Folders inside that can't be read are skipped.
  const Status& GetStatus() const { return status_; }
  // Those folders, each with its path as `place`, in the order of the paths.
  const std::vector<Error>& GetUnread() const { return unread_; }
  // Paths of all files with this name, in any letter case.
  const std::vector<std::string>& Find(const std::string& name) const;

 private:
  void List(const std::string& folder);

  FileSystem& files_;
  std::string start_;
  std::vector<std::string> open_;  // folders that are still to be listed
  std::size_t count_ = 0;
  Status status_;
  std::vector<Error> unread_;
  std::unordered_map<std::string, std::vector<std::string>> paths_;  // by folded name
};

}  // namespace tarn::host
