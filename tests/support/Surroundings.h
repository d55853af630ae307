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

// What tests need of the machine they run on: files, environment, processes.
namespace tarn::testing {

// The bytes of a file on the real disk; the calling test fails when it can't be read.
inline std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

// A path below the folder of the sources; the same when a test has left the folder it started in.
inline std::string SourcePath(const std::string& relative) {
  static const std::filesystem::path sources = [] {
    const char* const named = std::getenv("TARN_SOURCE_DIR");
    return std::filesystem::absolute(named ? named : ".");
  }();
  return sources / relative;
}

// A new folder on the real disk, gone with all that it holds at the end.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& name = "tarn-test-") {
    path = std::filesystem::temp_directory_path() / (name + "XXXXXX");
    if (mkdtemp(path.data()) == nullptr) ADD_FAILURE() << "no scratch folder " << path;
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  std::string operator/(const std::string& name) const { return path + "/" + name; }
  const std::string& Path() const { return path; }
  // Makes the folders of the file, too.
  void Write(const std::string& name, std::string_view bytes) const {
    const std::filesystem::path file = *this / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
  }

 private:
  std::string path;
};

// A variable of the environment that has another value, or with null none, for a while.
class ScopedVariable {
 public:
  ScopedVariable(const char* variable, const char* value) : name(variable) {
    if (const char* held = std::getenv(name)) before = held;
    Set(value);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() { Set(before ? before->c_str() : nullptr); }

 private:
  void Set(const char* value) { value ? setenv(name, value, 1) : unsetenv(name); }

  const char* name;
  std::optional<std::string> before;
};

// Whether a process of that number is there, other than as one that nobody has waited for yet.
inline bool Runs(const std::string& pid) {
  std::ifstream status("/proc/" + pid + "/stat");
  std::string text;
  std::getline(status, text);
  const auto name = text.rfind(')');
  return name != std::string::npos && text.compare(name, 3, ") Z") != 0;
}

// Waits for a second at most.
inline bool EndsSoon(const std::string& pid) {
  for (int i = 0; i < 100 && Runs(pid); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return !Runs(pid);
}

}  // namespace tarn::testing
