#include "patterns/PikeVm.h"

#include <algorithm>

namespace tarn {
namespace {

constexpr std::uint32_t kNoState = ~std::uint32_t{0};

}  // namespace

PikeVm::PikeVm(const CompiledProgram& compiledProgram, const char* programCode, const char* text,
               const char* textEnd)
    : program_(compiledProgram), code_(programCode), subject_(text), end_(textEnd) {
  for (std::uint32_t number = 0; number < program_.instructions.size(); ++number) {
    const PatternInstruction& step = program_.instructions[number];
    stateOfInstruction_.push_back(static_cast<std::uint32_t>(states_.size()));
    const std::uint32_t count = step.kind == PatternInstruction::Literal ? step.length : 1;
    for (std::uint32_t taken = 0; taken < count; ++taken) states_.push_back({number, taken});
  }
  reached_.assign(states_.size(), 0);
}

bool PikeVm::Search(const char* start, bool isAnchored, PatternSlots& result) {
  bool matches = false;
  for (const char* at = start;; ++at) {
    if (!matches && (at == start || !isAnchored)) {
      if (now_.states.empty() && !isAnchored) at = program_.filter.FindStart(at, end_);
      if (!at) return false;
      Begin(at);
    }
    matches = Advance(at, result) || matches;
    if (at == end_ || (now_.states.empty() && (matches || isAnchored))) return matches;
  }
}

// Starts a thread at `at`. It has lower priority than all threads that were started before.
void PikeVm::Begin(const char* at) {
  if (now_.states.empty()) ++turn_;
  if (!program_.filter.MayStartAt(at)) return;
  slots_.fill(nullptr);
  slots_[0] = at;
  Follow(0, at, now_);
}

// Lets every thread consume the byte at `at`; a thread that can't is dropped. Returns true if a
// thread has matched; the threads of lower priority are dropped.
bool PikeVm::Advance(const char* at, PatternSlots& result) {
  ++turn_;
  then_.states.clear();
  then_.positions.clear();
  bool matches = false;
  for (std::size_t thread = 0; thread < now_.states.size() && !matches; ++thread) {
    ++stepCount_;
    const std::uint32_t state = now_.states[thread];
    const auto positions =
        now_.positions.begin() + static_cast<std::ptrdiff_t>(thread * program_.slotCount);
    std::copy_n(positions, program_.slotCount, slots_.begin());
    if (InstructionOf(state).kind == PatternInstruction::End) {
      matches = true;
      result = slots_;
      result[1] = at;
    } else if (const std::uint32_t next = MatchByte(state, *at); next != kNoState) {
      Follow(next, at + 1, then_);
    }
  }
  std::swap(now_, then_);
  return matches;
}

std::uint32_t PikeVm::MatchByte(std::uint32_t state, char byte) const {
  const PatternInstruction& step = InstructionOf(state);
  switch (step.kind) {
    case PatternInstruction::Literal: {
      const std::uint32_t taken = states_[state].taken;
      if (code_[step.literal + taken] != byte) return kNoState;
      return taken + 1 < step.length ? state + 1 : StateOf(step.next);
    }
    case PatternInstruction::Star:
      return step.bytes.Has(byte) ? state : kNoState;
    default:
      return step.bytes.Has(byte) ? StateOf(step.next) : kNoState;
  }
}

// Adds to `threads` all states that can be reached from `state` without consuming a byte, in
// priority order. Iterative depth-first traversal; each state is added once per turn.
void PikeVm::Follow(std::uint32_t state, const char* at, ThreadList& threads) {
  tasks_.push_back({false, state, nullptr});
  while (!tasks_.empty()) {
    const Task task = tasks_.back();
    tasks_.pop_back();
    if (task.isRestore) {
      slots_[task.number] = task.position;
    } else if (reached_[task.number] != turn_) {
      reached_[task.number] = turn_;
      ++stepCount_;
      FollowState(task.number, at, threads);
    }
  }
}

void PikeVm::FollowState(std::uint32_t state, const char* at, ThreadList& threads) {
  const PatternInstruction& step = InstructionOf(state);
  if (states_[state].taken == 0 && !step.begins.Has(*at)) return;
  const auto follow = [this](const PatternInstruction* next) {
    tasks_.push_back({false, StateOf(next), nullptr});
  };
  switch (step.kind) {
    case PatternInstruction::End:
    case PatternInstruction::Literal:
    case PatternInstruction::MatchByte:
    case PatternInstruction::Star:
      threads.states.push_back(state);
      threads.positions.insert(threads.positions.end(), slots_.begin(),
                               slots_.begin() + static_cast<std::ptrdiff_t>(program_.slotCount));
      if (step.kind == PatternInstruction::Star) follow(step.next);
      break;
    case PatternInstruction::Split:
      follow(step.other);
      follow(step.next);
      break;
    case PatternInstruction::Save:
      tasks_.push_back({true, step.slot, slots_[step.slot]});
      slots_[step.slot] = at;
      follow(step.next);
      break;
    default:
      if (HoldsAt(step.kind, subject_, at)) follow(step.next);
  }
}

}  // namespace tarn
