#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/files/FileSystem.h"

namespace tarn {

// Modification times of files as examined since the last Forget, so that a walk over an
// up-to-date tree examines each file once, however many nodes depend on it. Whoever may have
// changed a file (a tool that ran, a deletion, the end of a walk) makes it forget everything.
class FileTimes {
 public:
  explicit FileTimes(FileSystem& fileSystem) : files(fileSystem) {}

  // Seconds since 1970; nothing when the file cannot be examined.
  std::optional<std::int64_t> Get(const char* path);

  // For examining elsewhere: whether Get would answer without looking at the disk, and the way to
  // hand in what was seen.
  bool Knows(const char* path) const { return times.find(std::string_view(path)) != times.end(); }
  void Add(std::string path, std::optional<std::int64_t> time);

  void Forget();
  // Changes with each Forget.
  std::uint64_t GetEpoch() const { return epoch; }

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const;
  };

  FileSystem& files;
  std::unordered_map<std::string, std::optional<std::int64_t>, TextHash, std::equal_to<>> times;
  std::uint64_t epoch = 1;
};

}  // namespace tarn
