#include "platform/files/ExactNames.h"

#include <chrono>

#include "platform/paths/Paths.h"

namespace tarn {

namespace {

// Returns true if the name that the system gets is the path itself.
bool IsNative(const std::string& path) {
  return !HasDrive(path) && (kSeparator == '\\' || path.find('\\') == path.npos);
}

}  // namespace

std::vector<bool> AreExactFiles(FileSystem& disk, const std::vector<std::string>& paths) {
  std::vector<const char*> names;
  names.reserve(paths.size());
  for (const std::string& path : paths) names.push_back(path.c_str());
  const auto found = disk.ExamineMany(names, std::chrono::steady_clock::time_point::max());
  std::vector<bool> isExact;
  isExact.reserve(paths.size());
  for (std::size_t i = 0; i < paths.size(); ++i) {
    isExact.push_back(found[i] && !found[i]->otherSpelling && IsNative(paths[i]));
  }
  return isExact;
}

std::vector<std::string> NamesOnDisk(FileSystem& disk, std::vector<std::string> paths) {
  const std::vector<bool> isExact = AreExactFiles(disk, paths);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (!isExact[i]) paths[i] = disk.NameOnDisk(paths[i]);
  }
  return paths;
}

}  // namespace tarn
