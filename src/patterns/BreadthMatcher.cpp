#include "patterns/BreadthMatcher.h"

#include <algorithm>

namespace tarn {
namespace {

constexpr std::uint32_t kNoState = ~std::uint32_t{0};

}  // namespace

BreadthMatcher::BreadthMatcher(const PatternPlan& patternPlan, const char* programCode,
                               const char* text, const char* textEnd)
    : plan(patternPlan), code(programCode), subject(text), end(textEnd) {
  for (std::uint32_t number = 0; number < plan.steps.size(); ++number) {
    const PatternStep& step = plan.steps[number];
    stateOfStep.push_back(static_cast<std::uint32_t>(states.size()));
    const std::uint32_t count = step.kind == PatternStep::Literal ? step.length : 1;
    for (std::uint32_t taken = 0; taken < count; ++taken) states.push_back({number, taken});
  }
  reached.assign(states.size(), 0);
}

bool BreadthMatcher::Search(const char* start, bool isAnchored, PatternSlots& result) {
  bool matches = false;
  for (const char* at = start;; ++at) {
    if (!matches && (at == start || !isAnchored)) {
      if (now.states.empty() && !isAnchored) at = plan.lead.FindStart(at, end);
      if (!at) return false;
      Begin(at);
    }
    matches = Advance(at, result) || matches;
    if (at == end || (now.states.empty() && (matches || isAnchored))) return matches;
  }
}

// Starts a thread at `at`. It has lower priority than all threads that were started before.
void BreadthMatcher::Begin(const char* at) {
  if (now.states.empty()) ++turn;
  if (!plan.lead.MayStartAt(at)) return;
  slots.fill(nullptr);
  slots[0] = at;
  Follow(0, at, now);
}

// Lets every thread consume the byte at `at`; a thread that can't is dropped. Returns true if a
// thread has matched; the threads of lower priority are dropped.
bool BreadthMatcher::Advance(const char* at, PatternSlots& result) {
  ++turn;
  then.states.clear();
  then.positions.clear();
  bool matches = false;
  for (std::size_t way = 0; way < now.states.size() && !matches; ++way) {
    ++stepCount;
    const std::uint32_t state = now.states[way];
    const auto positions =
        now.positions.begin() + static_cast<std::ptrdiff_t>(way * plan.slotCount);
    std::copy_n(positions, plan.slotCount, slots.begin());
    if (StepOf(state).kind == PatternStep::End) {
      matches = true;
      result = slots;
      result[1] = at;
    } else if (const std::uint32_t next = Take(state, *at); next != kNoState) {
      Follow(next, at + 1, then);
    }
  }
  std::swap(now, then);
  return matches;
}

std::uint32_t BreadthMatcher::Take(std::uint32_t state, char byte) const {
  const PatternStep& step = StepOf(state);
  switch (step.kind) {
    case PatternStep::Literal: {
      const std::uint32_t taken = states[state].taken;
      if (code[step.literal + taken] != byte) return kNoState;
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
  tasks.push_back({false, state, nullptr});
  while (!tasks.empty()) {
    const Task task = tasks.back();
    tasks.pop_back();
    if (task.isRestore) {
      slots[task.number] = task.position;
    } else if (reached[task.number] != turn) {
      reached[task.number] = turn;
      ++stepCount;
      FollowState(task.number, at, ways);
    }
  }
}

void BreadthMatcher::FollowState(std::uint32_t state, const char* at, Ways& ways) {
  const PatternStep& step = StepOf(state);
  if (states[state].taken == 0 && !step.begins.Has(*at)) return;
  const auto follow = [this](const PatternStep* next) {
    tasks.push_back({false, StateOf(next), nullptr});
  };
  switch (step.kind) {
    case PatternStep::End:
    case PatternStep::Literal:
    case PatternStep::Take:
    case PatternStep::Star:
      ways.states.push_back(state);
      ways.positions.insert(ways.positions.end(), slots.begin(),
                            slots.begin() + static_cast<std::ptrdiff_t>(plan.slotCount));
      if (step.kind == PatternStep::Star) follow(step.next);
      break;
    case PatternStep::Split:
      follow(step.other);
      follow(step.next);
      break;
    case PatternStep::Save:
      tasks.push_back({true, step.slot, slots[step.slot]});
      slots[step.slot] = at;
      follow(step.next);
      break;
    default:
      if (HoldsAt(step.kind, subject, at)) follow(step.next);
  }
}

}  // namespace tarn
