#pragma once

#include <cstddef>
#include <string>

#include "patterns/BacktrackStack.h"
#include "patterns/CompiledPattern.h"
#include "patterns/CompiledProgram.h"

namespace tarn {

// Single search for a pattern in a subject. Exists during one match. Takes at most O(program x
// subject) time; for the method see PatternMatcher.cpp.
class CPatternMatcher {
 public:
  // Both arguments are borrowed. The positions of the groups are stored in the pattern.
  CPatternMatcher(CCompiledPattern& compiledPattern, const char* text);

  // Returns false if nothing matches, or if the program is damaged; in the latter case the error is
  // set.
  bool Search();
  const std::string& GetError() const { return error_; }
  // Number of steps so far, including the bytes that literals and repeats consumed.
  std::size_t GetStepCount() const { return stepCount_; }

 private:
  enum class Outcome { Matches, Fails, CostsTooMuch };
  // Position where an attempt continues; without a step, the attempt has failed.
  struct Point {
    const PatternInstruction* step;
    const char* at;
  };

  // Compiles the program of the pattern, if it has none yet. Returns false and sets the error if
  // the program is damaged.
  bool MakeProgram();
  // Tries to match at `start` by backtracking.
  Outcome Try(const char* start);
  const char* TakeMost(const PatternInstruction& star, const char* at);
  const char* PositionAfter(const PatternInstruction& star, const char* low, const char* high);
  // Pops choices until one allows the match to continue.
  Point ComeBack();
  // Continues the search with the Pike VM, from `start` on.
  bool FollowAll(const char* start);
  void StoreGroups();

  std::string error_;
  // End of the last attempt.
  const char* input_;
  const char* const subject_;
  CCompiledPattern::GroupPositions& groupStart_;
  CCompiledPattern::GroupPositions& groupEnd_;
  CCompiledPattern& pattern_;

  const char* subjectEnd_ = nullptr;
  const CompiledProgram* program_ = nullptr;
  PatternSlots slots_;
  BacktrackStack choices_;
  std::size_t stepCount_ = 0;
  std::size_t stepLimit_ = 0;
};

}  // namespace tarn
