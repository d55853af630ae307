#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "patterns/PatternLead.h"
#include "patterns/PatternSteps.h"

namespace tarn {

// Everything that a match needs in addition to the program bytes. Immutable once made.
struct PatternPlan {
  PatternSteps steps;
  PatternLead lead;
  // Number of slots that are used, including the two of the whole match.
  std::size_t slotCount = 2;

  // Returns an error if the program is damaged.
  PatternError Make(std::string_view program) {
    const PatternError problem = MakePatternSteps(program, steps);
    if (problem != PatternError::None) return problem;
    lead = PatternLead(steps, program);
    for (const PatternStep& step : steps) {
      slotCount = std::max(slotCount, (step.slot | std::size_t{1}) + 1);
    }
    return PatternError::None;
  }
};

}  // namespace tarn
