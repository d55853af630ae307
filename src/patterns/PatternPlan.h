#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "patterns/PatternLead.h"
#include "patterns/PatternSteps.h"

namespace tarn {

// All that a match needs besides the program itself. Never changes once made.
struct PatternPlan {
  PatternSteps steps;
  PatternLead lead;
  // How many of the slots are used, those of the whole match among them.
  std::size_t slotCount = 2;

  // Fails on a damaged program.
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
