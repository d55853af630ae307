#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

// Helpers for the test environment: files, environment variables, processes.
namespace tarn::testing {

// Returns the content of a file on the real disk; the test fails if it cannot be read.
inline std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

// Returns a path below the source folder; independent of later changes of the current folder.
inline std::string SourcePath(const std::string& relative) {
  static const std::filesystem::path sources = [] {
    const char* const named = std::getenv("TARN_SOURCE_DIR");
    return std::filesystem::absolute(named ? named : ".");
  }();
  return sources / relative;
}

// A new folder on the real disk, removed with its content by the destructor.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& name = "tarn-test-") {
    path_ = std::filesystem::temp_directory_path() / (name + "XXXXXX");
    if (mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "no scratch folder " << path_;
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& Path() const { return path_; }
  // Creates the file's folders, too.
  void Write(const std::string& name, std::string_view bytes) const {
    const std::filesystem::path file = *this / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
  }

 private:
  std::string path_;
};

// Sets an environment variable, or with null removes it, during its lifetime.
class ScopedVariable {
 public:
  ScopedVariable(const char* variable, const char* value) : name_(variable) {
    if (const char* held = std::getenv(name_)) before_ = held;
    Set(value);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() { Set(before_ ? before_->c_str() : nullptr); }

 private:
  void Set(const char* value) { value ? setenv(name_, value, 1) : unsetenv(name_); }

  const char* name_;
  std::optional<std::string> before_;
};

// Returns whether a process of that id is running (zombies do not count).
inline bool Runs(const std::string& pid) {
  std::ifstream status("/proc/" + pid + "/stat");
  std::string text;
  std::getline(status, text);
  const auto name = text.rfind(')');
  return name != std::string::npos && text.compare(name, 3, ") Z") != 0;
}

// Waits for at most a second.
inline bool EndsSoon(const std::string& pid) {
  for (int i = 0; i < 100 && Runs(pid); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return !Runs(pid);
}

}  // namespace tarn::testing
