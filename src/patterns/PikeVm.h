#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "patterns/CompiledProgram.h"

namespace tarn {

// Pike VM: simulates the NFA of a pattern, one thread per program state, in priority order. Two
// threads that reach the same state at the same position have the same future, so only the one with
// the higher priority continues. Time O(program x subject), memory O(program).
class PikeVm {
 public:
  // All arguments are borrowed.
  PikeVm(const CompiledProgram& compiledProgram, const char* programCode, const char* text,
         const char* textEnd);

  // Finds the first match that begins at `start` or, unless `isAnchored`, after it. On success, the
  // first two slots of `result` are the bounds of the whole match.
  bool Search(const char* start, bool isAnchored, PatternSlots& result);
  std::size_t GetStepCount() const { return stepCount_; }

 private:
  // NFA state: a step, and the number of bytes of its literal that were consumed.
  struct State {
    std::uint32_t step;
    std::uint32_t taken;
  };
  // Threads that wait for a byte, in priority order, each with its positions.
  struct ThreadList {
    std::vector<std::uint32_t> states;
    std::vector<const char*> positions;
  };
  // Work item of `Follow()`: a state to follow or a slot to restore.
  struct Task {
    bool isRestore;
    std::uint32_t number;
    const char* position;
  };

  const PatternInstruction& InstructionOf(std::uint32_t state) const {
    return program_.instructions[states_[state].step];
  }
  std::uint32_t StateOf(const PatternInstruction* step) const {
    return stateOfInstruction_[static_cast<std::size_t>(step - program_.instructions.data())];
  }
  void Begin(const char* at);
  bool Advance(const char* at, PatternSlots& result);
  // Returns the state after consuming `byte`, or kNoState if `state` can't consume it.
  std::uint32_t MatchByte(std::uint32_t state, char byte) const;
  void Follow(std::uint32_t state, const char* at, ThreadList& threads);
  void FollowState(std::uint32_t state, const char* at, ThreadList& threads);

  const CompiledProgram& program_;
  const char* const code_;
  const char* const subject_;
  const char* const end_;
  std::vector<State> states_;
  std::vector<std::uint32_t> stateOfInstruction_;
  // Turn in which each state was last reached.
  std::vector<std::size_t> reached_;
  std::size_t turn_ = 0;
  PatternSlots slots_{};
  // Threads at the current position and at the next one.
  ThreadList now_;
  ThreadList then_;
  std::vector<Task> tasks_;
  std::size_t stepCount_ = 0;
};

}  // namespace tarn
