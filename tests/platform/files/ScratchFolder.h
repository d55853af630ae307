#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace tarn::testing {

// A new folder on the real disk, gone with all that it holds at the end.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = std::filesystem::temp_directory_path() / "tarn-test-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no scratch folder " << name;
    path = name;
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  std::string operator/(const std::string& name) const { return path + "/" + name; }
  const std::string& Path() const { return path; }

 private:
  std::string path;
};

}  // namespace tarn::testing
