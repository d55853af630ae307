#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>

namespace tarn {

// Bounds what is read more than once while a project is loaded. A project may refer to a file
// several times, and is then read as often; but files that each refer twice to the next one are
// 2^N reads of the Nth.
class RepeatedReads {
 public:
  // Returns whether the file, given by its canonical path, may be read once more. The first read of
  // a file always may.
  bool Allows(const std::string& path) {
    isRepeated_ = !paths_.insert(path).second;
    const bool isAllowed = !isRepeated_ || cost_ < kMaxCost;
    if (!isAllowed) ++refusals_;
    return isAllowed;
  }
  // Returns whether no file was refused before the one that Allows has just refused.
  bool IsFirstRefusal() const { return refusals_ == 1; }
  // Counts the bytes read of the file that was allowed last.
  void Add(std::size_t bytes) {
    if (isRepeated_) cost_ += bytes + kCostOfRead;
  }

 private:
  static constexpr std::size_t kMaxCost = 16 << 20;
  static constexpr std::size_t kCostOfRead = 16 << 10;  // of a file of any size

  std::unordered_set<std::string> paths_;
  std::size_t cost_ = 0;
  std::size_t refusals_ = 0;
  bool isRepeated_ = false;
};

}  // namespace tarn
