#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "patterns/PatternPlan.h"

namespace tarn {

// Searches by following all ways to match at once, byte by byte. Two that come to the same step at
// the same position have the same future, so only the one that is to be preferred goes on: hence
// the time is bounded by the lengths of program and subject, the memory by the program's.
class BreadthMatcher {
 public:
  // All are borrowed.
  BreadthMatcher(const PatternPlan& patternPlan, const char* programCode, const char* text,
                 const char* textEnd);

  // The first match that begins at `start`, or behind it unless it is anchored there. On success
  // the first two slots are those of the whole match.
  bool Search(const char* start, bool isAnchored, PatternSlots& result);
  std::size_t GetStepCount() const { return stepCount; }

 private:
  // A step, and how many bytes of its literal have been taken.
  struct State {
    std::uint32_t step;
    std::uint32_t taken;
  };
  // Ways to match that wait for a byte, by preference, each with its positions.
  struct Ways {
    std::vector<std::uint32_t> states;
    std::vector<const char*> positions;
  };
  // What is still to be done while states are followed: one to follow or a slot to restore.
  struct Task {
    bool isRestore;
    std::uint32_t number;
    const char* position;
  };

  const PatternStep& StepOf(std::uint32_t state) const { return plan.steps[states[state].step]; }
  std::uint32_t StateOf(const PatternStep* step) const {
    return stateOfStep[static_cast<std::size_t>(step - plan.steps.data())];
  }
  void Begin(const char* at);
  bool Advance(const char* at, PatternSlots& result);
  std::uint32_t Take(std::uint32_t state, char byte) const;
  void Follow(std::uint32_t state, const char* at, Ways& ways);
  void FollowState(std::uint32_t state, const char* at, Ways& ways);

  const PatternPlan& plan;
  const char* const code;
  const char* const subject;
  const char* const end;
  std::vector<State> states;
  std::vector<std::uint32_t> stateOfStep;
  // The turn in which a state was last reached.
  std::vector<std::size_t> reached;
  std::size_t turn = 0;
  PatternSlots slots{};
  Ways now;
  Ways then;
  std::vector<Task> tasks;
  std::size_t stepCount = 0;
};

}  // namespace tarn
