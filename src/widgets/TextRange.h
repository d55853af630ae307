#pragma once

#include <algorithm>
#include <cstddef>

namespace tarn {

// Bytes of a text from `start` up to, but without, `end`.
struct TextRange {
  std::size_t start = 0;
  std::size_t end = 0;

  std::size_t Length() const { return end - start; }
  bool IsEmpty() const { return end <= start; }
  // The part of it that a text of this length has.
  TextRange Within(std::size_t length) const {
    return {std::min(start, length), std::min(std::max(start, end), length)};
  }
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

}  // namespace tarn
