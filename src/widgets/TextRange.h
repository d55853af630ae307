#pragma once

#include <algorithm>
#include <cstddef>

namespace tarn {

// Byte range of a text: from `start` up to, but not including, `end`.
struct TextRange {
  std::size_t start = 0;
  std::size_t end = 0;

  std::size_t Length() const { return end - start; }
  // True also for an inverted range.
  bool IsEmpty() const { return end <= start; }
  // The range clamped to a text of this length.
  TextRange Within(std::size_t length) const {
    return {std::min(start, length), std::min(std::max(start, end), length)};
  }
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

}  // namespace tarn
