#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

// The files and folders created by a command. The destructor removes them again unless Keep() is
// called, because nothing refers to them then.
class CreatedFiles {
 public:
  CreatedFiles() = default;
  CreatedFiles(const CreatedFiles&) = delete;
  CreatedFiles& operator=(const CreatedFiles&) = delete;
  ~CreatedFiles() {
    std::error_code ignored;
    for (const std::string& path : written_) std::filesystem::remove(path, ignored);
    for (const std::string& path : paths_) {
      // Another program may have written to it in the meantime.
      if (std::filesystem::is_empty(path, ignored)) std::filesystem::remove(path, ignored);
    }
    // Fails for a folder that is in use.
    for (auto each = folders_.rbegin(); each != folders_.rend(); ++each) {
      std::filesystem::remove(*each, ignored);
    }
  }

  // Call this before an empty file is created. Creates the folders of the path that are missing; if
  // that fails, so does the creation of the file.
  void Expect(FileSystem& files, const std::string& path) {
    std::error_code ignored;
    // A dangling link belongs to the user.
    const auto status = std::filesystem::symlink_status(path, ignored);
    if (std::filesystem::exists(status)) return;
    paths_.push_back(path);
    ExpectFolders(FolderOf(path));
    (void)files.CreateFolders(FolderOf(path));
  }
  // Call this before folders are created.
  void ExpectFolders(const std::string& folder) {
    std::error_code ignored;
    const auto status = std::filesystem::symlink_status(folder, ignored);
    if (folder.empty() || std::filesystem::exists(status) || FolderOf(folder) == folder) return;
    ExpectFolders(FolderOf(folder));
    folders_.push_back(folder);
  }
  // Call this after a file with content was created.
  void AddWritten(const std::string& path) { written_.push_back(path); }
  void Keep() {
    paths_.clear();
    written_.clear();
    folders_.clear();
  }

 private:
  std::vector<std::string> paths_, written_;
  std::vector<std::string> folders_;  // outer ones first
};

}  // namespace tarn::host
