#include "patterns/BreadthMatcher.h"

#include <algorithm>

namespace tarn {
namespace {

constexpr std::uint32_t kNoState = ~std::uint32_t{0};

}  // namespace

BreadthMatcher::BreadthMatcher(const PatternPlan& patternPlan, const char* programCode,
                               const char* text, const char* textEnd)
    : plan_(patternPlan), code_(programCode), subject_(text), end_(textEnd) {
  for (std::uint32_t number = 0; number < plan_.steps.size(); ++number) {
    const PatternStep& step = plan_.steps[number];
    stateOfStep_.push_back(static_cast<std::uint32_t>(states_.size()));
    const std::uint32_t count = step.kind == PatternStep::Literal ? step.length : 1;
    for (std::uint32_t taken = 0; taken < count; ++taken) states_.push_back({number, taken});
  }
  reached_.assign(states_.size(), 0);
}

bool BreadthMatcher::Search(const char* start, bool isAnchored, PatternSlots& result) {
  bool matches = false;
  for (const char* at = start;; ++at) {
    if (!matches && (at == start || !isAnchored)) {
      if (now_.states.empty() && !isAnchored) at = plan_.lead.FindStart(at, end_);
      if (!at) return false;
      Begin(at);
    }
    matches = Advance(at, result) || matches;
    if (at == end_ || (now_.states.empty() && (matches || isAnchored))) return matches;
  }
}

// Starts a thread at `at`. It has lower priority than all threads that were started before.
void BreadthMatcher::Begin(const char* at) {
  if (now_.states.empty()) ++turn_;
  if (!plan_.lead.MayStartAt(at)) return;
  slots_.fill(nullptr);
  slots_[0] = at;
  Follow(0, at, now_);
}

// Lets every thread consume the byte at `at`; a thread that can't is dropped. Returns true if a
// thread has matched; the threads of lower priority are dropped.
bool BreadthMatcher::Advance(const char* at, PatternSlots& result) {
  ++turn_;
  then_.states.clear();
  then_.positions.clear();
  bool matches = false;
  for (std::size_t way = 0; way < now_.states.size() && !matches; ++way) {
    ++stepCount_;
    const std::uint32_t state = now_.states[way];
    const auto positions =
        now_.positions.begin() + static_cast<std::ptrdiff_t>(way * plan_.slotCount);
    std::copy_n(positions, plan_.slotCount, slots_.begin());
    if (StepOf(state).kind == PatternStep::End) {
      matches = true;
      result = slots_;
      result[1] = at;
    } else if (const std::uint32_t next = Take(state, *at); next != kNoState) {
      Follow(next, at + 1, then_);
    }
  }
  std::swap(now_, then_);
  return matches;
}

std::uint32_t BreadthMatcher::Take(std::uint32_t state, char byte) const {
  const PatternStep& step = StepOf(state);
  switch (step.kind) {
    case PatternStep::Literal: {
      const std::uint32_t taken = states_[state].taken;
      if (code_[step.literal + taken] != byte) return kNoState;
      return taken + 1 < step.length ? state + 1 : StateOf(step.next);
    }
    case PatternStep::Star:
      return step.bytes.Has(byte) ? state : kNoState;
    default:
      return step.bytes.Has(byte) ? StateOf(step.next) : kNoState;
  }
}

// Adds to `ways` all states that can be reached from `state` without consuming a byte, in priority
// order. Iterative depth-first traversal; each state is added once per turn.
void BreadthMatcher::Follow(std::uint32_t state, const char* at, Ways& ways) {
  tasks_.push_back({false, state, nullptr});
  while (!tasks_.empty()) {
    const Task task = tasks_.back();
    tasks_.pop_back();
    if (task.isRestore) {
      slots_[task.number] = task.position;
    } else if (reached_[task.number] != turn_) {
      reached_[task.number] = turn_;
      ++stepCount_;
      FollowState(task.number, at, ways);
    }
  }
}

void BreadthMatcher::FollowState(std::uint32_t state, const char* at, Ways& ways) {
  const PatternStep& step = StepOf(state);
  if (states_[state].taken == 0 && !step.begins.Has(*at)) return;
  const auto follow = [this](const PatternStep* next) {
    tasks_.push_back({false, StateOf(next), nullptr});
  };
  switch (step.kind) {
    case PatternStep::End:
    case PatternStep::Literal:
    case PatternStep::Take:
    case PatternStep::Star:
      ways.states.push_back(state);
      ways.positions.insert(ways.positions.end(), slots_.begin(),
                            slots_.begin() + static_cast<std::ptrdiff_t>(plan_.slotCount));
      if (step.kind == PatternStep::Star) follow(step.next);
      break;
    case PatternStep::Split:
      follow(step.other);
      follow(step.next);
      break;
    case PatternStep::Save:
      tasks_.push_back({true, step.slot, slots_[step.slot]});
      slots_[step.slot] = at;
      follow(step.next);
      break;
    default:
      if (HoldsAt(step.kind, subject_, at)) follow(step.next);
  }
}

}  // namespace tarn
