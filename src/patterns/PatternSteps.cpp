#include "patterns/PatternSteps.h"

#include <cstddef>

#include "patterns/PatternStepReader.h"

namespace tarn {
namespace {

bool TakesOneByte(const PatternStep& step) {
  return step.kind == PatternStep::Take || (step.kind == PatternStep::Literal && step.length == 1);
}

// Replaces alternatives of one byte each by a set.
void MergeAlternatives(PatternSteps& steps) {
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    if (step->kind != PatternStep::Split) continue;
    const PatternStep& one = *step->next;
    const PatternStep& two = *step->other;
    if (!TakesOneByte(one) || !TakesOneByte(two) || one.next != two.next) continue;
    step->kind = PatternStep::Take;
    step->bytes = one.bytes | two.bytes;
    step->next = one.next;
  }
}

ByteSet BeginsOf(const PatternStep& step) {
  switch (step.kind) {
    case PatternStep::End:
      return ~ByteSet();
    case PatternStep::Literal:
    case PatternStep::Take:
      return step.bytes;
    case PatternStep::LineEnd:
      return step.next->begins & ~kSubjectBytes;
    case PatternStep::WordBegin:
      return step.next->begins & kWordBytes;
    case PatternStep::WordEnd:
      return step.next->begins & ~kWordBytes;
    case PatternStep::Star:
      return step.next->begins | step.bytes;
    case PatternStep::Split:
      return step.next->begins | step.other->begins;
    default:
      return step.next->begins;
  }
}

// Fixed-point iteration from the last step to the first: the successor of a step is known by then,
// except at the end of a loop. The sets only grow, and each iteration settles at least one more
// loop, of which there are at most nine.
void FindBegins(PatternSteps& steps) {
  bool hasLoops = false;
  bool changes = false;
  do {
    changes = false;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
      const ByteSet begins = BeginsOf(*step);
      changes = changes || begins != step->begins;
      hasLoops = hasLoops || (step->next && step->next <= &*step);
      step->begins = begins;
    }
  } while (hasLoops && changes);
}

// Steps are stored in program order. So a step that no link skips, forward or backward, is passed
// exactly once by every match. Linear: counts the links over each step by a difference array.
void FindCertain(PatternSteps& steps) {
  // Number of links that begin to skip a step, minus the number of those that end there.
  std::vector<int> changes(steps.size() + 1, 0);
  const auto addLink = [&](const PatternStep& step, const PatternStep* target) {
    const std::ptrdiff_t from = &step - steps.data();
    const std::ptrdiff_t to = target - steps.data();
    ++changes[static_cast<std::size_t>(to > from ? from + 1 : to)];
    --changes[static_cast<std::size_t>(to > from ? to : from + 1)];
  };
  for (const PatternStep& step : steps) {
    if (step.kind == PatternStep::End || step.kind == PatternStep::Jump) continue;
    addLink(step, step.next);
    if (step.kind == PatternStep::Split) addLink(step, step.other);
  }
  int passing = 0;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    passing += changes[i];
    steps[i].isCertain = passing == 0;
  }
}

void FindWhatFollows(PatternStep& star) {
  star.takesMost = !star.bytes.Meets(star.next->begins);
  star.takesAny = star.bytes == kSubjectBytes;
  const PatternStep* next = star.next;
  while (next->kind == PatternStep::Save) next = next->next;
  if (next->kind != PatternStep::Literal) return;
  star.literal = next->literal;
  star.length = next->length;
}

}  // namespace

bool HoldsAt(PatternStep::Kind bound, const char* subject, const char* at) {
  switch (bound) {
    case PatternStep::LineBegin:
      return at == subject;
    case PatternStep::LineEnd:
      return *at == '\0';
    case PatternStep::WordBegin:
      return kWordBytes.Has(*at) && (at == subject || !kWordBytes.Has(at[-1]));
    case PatternStep::WordEnd:
      return !kWordBytes.Has(*at);
    default:
      return false;
  }
}

PatternError MakePatternSteps(std::string_view code, PatternSteps& steps) {
  const PatternError problem = PatternStepReader(code, steps).Read();
  if (problem != PatternError::None) return problem;
  MergeAlternatives(steps);
  FindBegins(steps);
  FindCertain(steps);
  for (PatternStep& step : steps) {
    if (step.kind == PatternStep::Star) FindWhatFollows(step);
  }
  return PatternError::None;
}

}  // namespace tarn
