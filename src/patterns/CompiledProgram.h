#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "patterns/PatternProgram.h"
#include "patterns/PrefixFilter.h"

namespace tarn {

// Everything that a match needs in addition to the program bytes. Immutable once made.
struct CompiledProgram {
  PatternProgram instructions;
  PrefixFilter filter;
  // Number of slots that are used, including the two of the whole match.
  std::size_t slotCount = 2;

  // Returns an error if the program is damaged.
  PatternError Make(std::string_view program) {
    const PatternError problem = MakePatternProgram(program, instructions);
    if (problem != PatternError::None) return problem;
    filter = PrefixFilter(instructions, program);
    for (const PatternInstruction& step : instructions) {
      slotCount = std::max(slotCount, (step.slot | std::size_t{1}) + 1);
    }
    return PatternError::None;
  }
};

}  // namespace tarn
