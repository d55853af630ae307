#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "patterns/ByteSet.h"
#include "patterns/PatternSteps.h"

namespace tarn {

// What the first few bytes of any match are like, to find where one may begin without trying.
class PatternLead {
 public:
  PatternLead() = default;
  PatternLead(const PatternSteps& steps, std::string_view code);

  // The first place from `at` on where a match may begin, `end` itself included; null when there is
  // none. `end` is where the subject's closing zero stands.
  const char* FindStart(const char* at, const char* end) const;
  bool MayStartAt(const char* at) const {
    // No set holds zero, so this stops at the subject's end.
    for (std::size_t i = 0; i < length; ++i) {
      if (!sets[i].Has(at[i])) return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t kMost = 4;

  // The sets that the first bytes are taken from: as many as tell something, maybe none.
  std::array<ByteSet, kMost> sets;
  std::size_t length = 0;
  // The one among them that is looked for.
  std::ptrdiff_t rarest = 0;
  // Its byte, if there is just one; else zero.
  char rarestByte = '\0';
};

}  // namespace tarn
