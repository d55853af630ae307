// Backtracking matcher: tries the alternatives in order and returns to the latest choice if the
// rest fails. Fast for typical patterns and subjects, but takes exponential time in the worst case.
// Therefore the number of steps is limited; beyond the limit, the search continues with the Pike VM
// in PikeVm, which is slower per byte but linear. Both find the same match. Nothing here
// recurses.
#include "patterns/PatternMatcher.h"

#include <cstring>
#include <utility>

#include "patterns/PikeVm.h"

namespace tarn {
namespace {

using Choice = BacktrackStack::Choice;

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
    : input_(text),
      subject_(text),
      groupStart_(compiledPattern.groupStart),
      groupEnd_(compiledPattern.groupEnd),
      pattern_(compiledPattern) {}

bool CPatternMatcher::MakeProgram() {
  auto made = std::make_shared<CompiledProgram>();
  const PatternError problem = made->Make(pattern_.GetProgram());
  if (problem != PatternError::None) {
    error_ = PatternErrorText(problem);
    return false;
  }
  pattern_.prepared = std::move(made);
  return true;
}

bool CPatternMatcher::Search() {
  if (!pattern_.prepared && !MakeProgram()) return false;
  program_ = pattern_.prepared.get();
  const std::size_t length = std::strlen(subject_);
  subjectEnd_ = subject_ + length;
  stepLimit_ = kStepsForAll + kStepsForEachByte * length;
  const char* start =
      pattern_.anchored ? subject_ : program_->filter.FindStart(subject_, subjectEnd_);
  while (start) {
    switch (Try(start)) {
      case Outcome::Matches:
        slots_[0] = start;
        slots_[1] = input_;
        StoreGroups();
        return true;
      case Outcome::CostsTooMuch:
        return FollowAll(start);
      case Outcome::Fails:
        if (pattern_.anchored || start == subjectEnd_) return false;
        start = program_->filter.FindStart(start + 1, subjectEnd_);
    }
  }
  return false;
}

bool CPatternMatcher::FollowAll(const char* start) {
  PikeVm matcher(*program_, pattern_.code.get(), subject_, subjectEnd_);
  const bool matches = matcher.Search(start, pattern_.anchored, slots_);
  stepCount_ += matcher.GetStepCount();
  if (matches) StoreGroups();
  return matches;
}

void CPatternMatcher::StoreGroups() {
  for (std::size_t group = 0; 2 * group < program_->slotCount; ++group) {
    groupStart_[group] = slots_[2 * group];
    groupEnd_[group] = slots_[2 * group + 1];
  }
}

// Main loop of matching. The state is kept in local variables, and each step costs one jump.
CPatternMatcher::Outcome CPatternMatcher::Try(const char* start) {
  for (std::size_t slot = 0; slot < program_->slotCount; ++slot) slots_[slot] = nullptr;
  choices_.Clear();
  const PatternInstruction* step = program_->instructions.data();
  const char* at = start;
  for (std::size_t count = 1;; ++count) {
    bool goesOn = true;
    const PatternInstruction* next = step->next;
    switch (step->kind) {
      case PatternInstruction::End:
        stepCount_ += count;
        input_ = at;
        return Outcome::Matches;
      case PatternInstruction::Save:
        if (!step->isCertain && !choices_.IsEmpty()) {
          goesOn =
              choices_.Push({Choice::Restore, step->slot, nullptr, slots_[step->slot], nullptr});
        }
        slots_[step->slot] = at;
        break;
      case PatternInstruction::Literal: {
        const std::size_t equal = CountEqual(at, &pattern_.code[step->literal], step->length);
        goesOn = equal == step->length;
        count += equal;
        at += equal;
        break;
      }
      case PatternInstruction::MatchByte:
        goesOn = step->bytes.Has(*at);
        ++at;
        break;
      case PatternInstruction::Star:
        at = TakeMost(*step, at);
        goesOn = at != nullptr;
        break;
      case PatternInstruction::Split:
        if (!step->other->begins.Has(*at)) break;
        if (next->begins.Has(*at)) {
          goesOn = choices_.Push({Choice::GoOn, 0, step->other, at, nullptr});
        } else {
          next = step->other;
        }
        break;
      default:
        goesOn = HoldsAt(step->kind, subject_, at);
    }
    step = next;
    if (goesOn) continue;
    stepCount_ += std::exchange(count, 0);
    if (stepCount_ > stepLimit_ || choices_.IsFull()) return Outcome::CostsTooMuch;
    const Point point = ComeBack();
    if (!point.step) return Outcome::Fails;
    step = point.step;
    at = point.at;
  }
}

// Returns the position after the bytes that the star consumes, or nullptr if the rest can't match.
// The bytes count as steps here, once for all positions that are tried.
const char* CPatternMatcher::TakeMost(const PatternInstruction& star, const char* at) {
  const char* most = star.takesAny ? subjectEnd_ : at;
  while (star.bytes.Has(*most)) ++most;
  stepCount_ += static_cast<std::size_t>(most - at);
  return PositionAfter(star, star.takesMost ? most : at, most);
}

// Returns the last position from `low` to `high` where the part after the star can begin, or
// nullptr if there is none. Earlier positions are pushed as a choice.
const char* CPatternMatcher::PositionAfter(const PatternInstruction& star, const char* low,
                                           const char* high) {
  const char* place = high;
  if (star.length != 0) {
    const char* const literal = &pattern_.code[star.literal];
    const char first = *literal;
    for (std::size_t equal = 0;; --place) {
      if (*place == first) {
        equal = CountEqual(place, literal, star.length);
        stepCount_ += equal;
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
  return !isChoice || choices_.Push({Choice::Shorten, 0, &star, place - 1, low}) ? place : nullptr;
}

CPatternMatcher::Point CPatternMatcher::ComeBack() {
  while (!choices_.IsEmpty()) {
    const Choice choice = choices_.Pop();
    switch (choice.kind) {
      case Choice::Restore:
        slots_[choice.slot] = choice.at;
        break;
      case Choice::GoOn:
        return {choice.step, choice.at};
      case Choice::Shorten:
        if (const char* place = PositionAfter(*choice.step, choice.low, choice.at)) {
          return {choice.step->next, place};
        }
    }
  }
  return {nullptr, nullptr};
}

}  // namespace tarn
