// Backtracking matcher: tries the alternatives in order and returns to the latest choice if the
// rest fails. Fast for typical patterns and subjects, but takes exponential time in the worst case.
// Therefore the number of steps is limited; beyond the limit, the search continues with the Pike VM
// in BreadthMatcher, which is slower per byte but linear. Both find the same match. Nothing here
// recurses.
#include "patterns/PatternMatcher.h"

#include <cstring>
#include <utility>

#include "patterns/BreadthMatcher.h"

namespace tarn {
namespace {

using Choice = ChoiceStack::Choice;

constexpr std::size_t kStepsForAll = 1024;
constexpr std::size_t kStepsForEachByte = 16;

// Returns the number of bytes of the literal that match at `at`. The literal has no zero, so this
// stops at the end of the subject.
std::size_t CountEqual(const char* at, const char* literal, std::size_t length) {
  std::size_t count = 0;
  while (count < length && at[count] == literal[count]) ++count;
  return count;
}

}  // namespace

CPatternMatcher::CPatternMatcher(CCompiledPattern& compiledPattern, const char* text)
    : input(text),
      subject(text),
      groupStart(compiledPattern.groupStart),
      groupEnd(compiledPattern.groupEnd),
      pattern(compiledPattern) {}

bool CPatternMatcher::MakePlan() {
  auto made = std::make_shared<PatternPlan>();
  const PatternError problem = made->Make(pattern.GetProgram());
  if (problem != PatternError::None) {
    error = PatternErrorText(problem);
    return false;
  }
  pattern.plan = std::move(made);
  return true;
}

bool CPatternMatcher::Search() {
  if (!pattern.plan && !MakePlan()) return false;
  plan = pattern.plan.get();
  const std::size_t length = std::strlen(subject);
  subjectEnd = subject + length;
  stepLimit = kStepsForAll + kStepsForEachByte * length;
  const char* start = pattern.anchored ? subject : plan->lead.FindStart(subject, subjectEnd);
  while (start) {
    switch (Try(start)) {
      case Outcome::Matches:
        slots[0] = start;
        slots[1] = input;
        StoreGroups();
        return true;
      case Outcome::CostsTooMuch:
        return FollowAll(start);
      case Outcome::Fails:
        if (pattern.anchored || start == subjectEnd) return false;
        start = plan->lead.FindStart(start + 1, subjectEnd);
    }
  }
  return false;
}

bool CPatternMatcher::FollowAll(const char* start) {
  BreadthMatcher matcher(*plan, pattern.code.get(), subject, subjectEnd);
  const bool matches = matcher.Search(start, pattern.anchored, slots);
  stepCount += matcher.GetStepCount();
  if (matches) StoreGroups();
  return matches;
}

void CPatternMatcher::StoreGroups() {
  for (std::size_t group = 0; 2 * group < plan->slotCount; ++group) {
    groupStart[group] = slots[2 * group];
    groupEnd[group] = slots[2 * group + 1];
  }
}

// Main loop of matching. The state is kept in local variables, and each step costs one jump.
CPatternMatcher::Outcome CPatternMatcher::Try(const char* start) {
  for (std::size_t slot = 0; slot < plan->slotCount; ++slot) slots[slot] = nullptr;
  choices.Clear();
  const PatternStep* step = plan->steps.data();
  const char* at = start;
  for (std::size_t count = 1;; ++count) {
    bool goesOn = true;
    const PatternStep* next = step->next;
    switch (step->kind) {
      case PatternStep::End:
        stepCount += count;
        input = at;
        return Outcome::Matches;
      case PatternStep::Save:
        if (!step->isCertain && !choices.IsEmpty()) {
          goesOn = choices.Push({Choice::Restore, step->slot, nullptr, slots[step->slot], nullptr});
        }
        slots[step->slot] = at;
        break;
      case PatternStep::Literal: {
        const std::size_t equal = CountEqual(at, &pattern.code[step->literal], step->length);
        goesOn = equal == step->length;
        count += equal;
        at += equal;
        break;
      }
      case PatternStep::Take:
        goesOn = step->bytes.Has(*at);
        ++at;
        break;
      case PatternStep::Star:
        at = TakeMost(*step, at);
        goesOn = at != nullptr;
        break;
      case PatternStep::Split:
        if (!step->other->begins.Has(*at)) break;
        if (next->begins.Has(*at)) {
          goesOn = choices.Push({Choice::GoOn, 0, step->other, at, nullptr});
        } else {
          next = step->other;
        }
        break;
      default:
        goesOn = HoldsAt(step->kind, subject, at);
    }
    step = next;
    if (goesOn) continue;
    stepCount += std::exchange(count, 0);
    if (stepCount > stepLimit || choices.IsFull()) return Outcome::CostsTooMuch;
    const Point point = ComeBack();
    if (!point.step) return Outcome::Fails;
    step = point.step;
    at = point.at;
  }
}

// Returns the position after the bytes that the star consumes, or nullptr if the rest can't match.
// The bytes count as steps here, once for all positions that are tried.
const char* CPatternMatcher::TakeMost(const PatternStep& star, const char* at) {
  const char* most = star.takesAny ? subjectEnd : at;
  while (star.bytes.Has(*most)) ++most;
  stepCount += static_cast<std::size_t>(most - at);
  return PlaceBehind(star, star.takesMost ? most : at, most);
}

// Returns the last position from `low` to `high` where the part after the star can begin, or
// nullptr if there is none. Earlier positions are pushed as a choice.
const char* CPatternMatcher::PlaceBehind(const PatternStep& star, const char* low,
                                         const char* high) {
  const char* place = high;
  if (star.length != 0) {
    const char* const literal = &pattern.code[star.literal];
    const char first = *literal;
    for (std::size_t equal = 0;; --place) {
      if (*place == first) {
        equal = CountEqual(place, literal, star.length);
        stepCount += equal;
        if (equal == star.length) break;
      }
      if (place == low) return nullptr;
    }
  } else {
    for (; !star.next->begins.Has(*place); --place) {
      if (place == low) return nullptr;
    }
  }
  const bool isChoice = place > low;
  return !isChoice || choices.Push({Choice::Shorten, 0, &star, place - 1, low}) ? place : nullptr;
}

CPatternMatcher::Point CPatternMatcher::ComeBack() {
  while (!choices.IsEmpty()) {
    const Choice choice = choices.Pop();
    switch (choice.kind) {
      case Choice::Restore:
        slots[choice.slot] = choice.at;
        break;
      case Choice::GoOn:
        return {choice.step, choice.at};
      case Choice::Shorten:
        if (const char* place = PlaceBehind(*choice.step, choice.low, choice.at)) {
          return {choice.step->next, place};
        }
    }
  }
  return {nullptr, nullptr};
}

}  // namespace tarn
