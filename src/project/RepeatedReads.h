#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>

namespace tarn {

// Limits the bytes that are read repeatedly while a project is loaded. A project may legitimately
// reference a file several times, and the file is then read each time; but in a chain of files that
// each reference the next one twice, the Nth file would be read 2^N times.
class RepeatedReads {
 public:
  // Returns true if the file, identified by its canonical path, may be read once more. The first
  // read of each file is always allowed.
  bool Allows(const std::string& path) {
    isRepeated_ = !paths_.insert(path).second;
    const bool isAllowed = !isRepeated_ || cost_ < kMaxCost;
    if (!isAllowed) ++refusals_;
    return isAllowed;
  }
  // Returns true if the file that Allows has just refused is the first one refused.
  bool IsFirstRefusal() const { return refusals_ == 1; }
  // Accounts for the bytes read from the file that was allowed last.
  void Add(std::size_t bytes) {
    if (isRepeated_) cost_ += bytes + kCostOfRead;
  }

 private:
  // Limit for all repeated reads of one project, in bytes.
  static constexpr std::size_t kMaxCost = 16 << 20;
  static constexpr std::size_t kCostOfRead = 16 << 10;  // fixed cost of each read

  std::unordered_set<std::string> paths_;
  std::size_t cost_ = 0;
  std::size_t refusals_ = 0;
  bool isRepeated_ = false;
};

}  // namespace tarn
