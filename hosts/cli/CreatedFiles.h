#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace tarn::host {

// The empty files created by a command. The destructor removes them again unless Keep() is called,
// because nothing refers to them then.
class CreatedFiles {
 public:
  CreatedFiles() = default;
  CreatedFiles(const CreatedFiles&) = delete;
  CreatedFiles& operator=(const CreatedFiles&) = delete;
  ~CreatedFiles() {
    std::error_code ignored;
    for (const std::string& path : paths_) {
      // Another program may have written to it in the meantime.
      if (std::filesystem::is_empty(path, ignored)) std::filesystem::remove(path, ignored);
    }
  }

  // Call this before the file is created.
  void Expect(const std::string& path) {
    std::error_code ignored;
    // A dangling link belongs to the user.
    const auto status = std::filesystem::symlink_status(path, ignored);
    if (!std::filesystem::exists(status)) paths_.push_back(path);
  }
  void Keep() { paths_.clear(); }

 private:
  std::vector<std::string> paths_;
};

}  // namespace tarn::host
