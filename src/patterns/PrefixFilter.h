#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "patterns/ByteSet.h"
#include "patterns/PatternProgram.h"

namespace tarn {

// Prefix filter: sets of the possible first bytes of a match. Finds candidates for the start of a
// match without running the program, by searching for the byte of the prefix that is rarest in tool
// output.
class PrefixFilter {
 public:
  PrefixFilter() = default;
  PrefixFilter(const PatternProgram& steps, std::string_view code);

  // Returns the first position from `at` to `end` inclusive where a match may begin, or nullptr if
  // there is none. `end` is the position of the subject's terminating zero.
  const char* FindStart(const char* at, const char* end) const;
  bool MayStartAt(const char* at) const {
    // No set contains zero, so this stops at the end of the subject.
    for (std::size_t i = 0; i < length_; ++i) {
      if (!sets_[i].Has(at[i])) return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t kMost = 4;

  // Sets of the first bytes, as many as are selective, possibly none.
  std::array<ByteSet, kMost> sets_;
  std::size_t length_ = 0;
  // Index of the most selective set, which is searched for.
  std::ptrdiff_t rarest_ = 0;
  // Its byte if the set has only one, else zero.
  char rarestByte_ = '\0';
};

}  // namespace tarn
