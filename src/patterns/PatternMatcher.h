#pragma once

#include <cstddef>
#include <string>

#include "patterns/ChoiceStack.h"
#include "patterns/CompiledPattern.h"
#include "patterns/PatternPlan.h"

namespace tarn {

// One search for a pattern in a subject. Lives during one match.
class CPatternMatcher {
 public:
  // Both are borrowed. The groups' positions go to the pattern.
  CPatternMatcher(CCompiledPattern& compiledPattern, const char* text);

  // False when nothing matches, or with an error when the program is damaged.
  bool Search();
  const std::string& GetError() const { return error; }
  // Steps taken so far, the bytes counted that literals and repeats ran over.
  std::size_t GetStepCount() const { return stepCount; }

 private:
  enum class Outcome { Matches, Fails, CostsTooMuch };
  // Where a try goes on; without a step it doesn't.
  struct Point {
    const PatternStep* step;
    const char* at;
  };

  bool MakePlan();
  Outcome Try(const char* start);
  const char* TakeMost(const PatternStep& star, const char* at);
  const char* PlaceBehind(const PatternStep& star, const char* low, const char* high);
  Point ComeBack();
  bool FollowAll(const char* start);
  void StoreGroups();

  std::string error;
  // Where the last try has ended.
  const char* input;
  const char* const subject;
  CCompiledPattern::GroupPositions& groupStart;
  CCompiledPattern::GroupPositions& groupEnd;
  CCompiledPattern& pattern;

  const char* subjectEnd = nullptr;
  const PatternPlan* plan = nullptr;
  PatternSlots slots;
  ChoiceStack choices;
  std::size_t stepCount = 0;
  std::size_t stepLimit = 0;
};

}  // namespace tarn
