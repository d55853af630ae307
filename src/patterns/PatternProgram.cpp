#include "patterns/PatternProgram.h"

#include <cstddef>

#include "patterns/PatternProgramReader.h"

namespace tarn {
namespace {

bool TakesOneByte(const PatternInstruction& step) {
  return step.kind == PatternInstruction::MatchByte ||
         (step.kind == PatternInstruction::Literal && step.length == 1);
}

// Replaces alternatives of one byte each by a set.
void MergeAlternatives(PatternProgram& steps) {
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    if (step->kind != PatternInstruction::Split) continue;
    const PatternInstruction& one = *step->next;
    const PatternInstruction& two = *step->other;
    if (!TakesOneByte(one) || !TakesOneByte(two) || one.next != two.next) continue;
    step->kind = PatternInstruction::MatchByte;
    step->bytes = one.bytes | two.bytes;
    step->next = one.next;
  }
}

ByteSet BeginsOf(const PatternInstruction& step) {
  switch (step.kind) {
    case PatternInstruction::End:
      return ~ByteSet();
    case PatternInstruction::Literal:
    case PatternInstruction::MatchByte:
      return step.bytes;
    case PatternInstruction::LineEnd:
      return step.next->begins & ~kSubjectBytes;
    case PatternInstruction::WordBegin:
      return step.next->begins & kWordBytes;
    case PatternInstruction::WordEnd:
      return step.next->begins & ~kWordBytes;
    case PatternInstruction::Star:
      return step.next->begins | step.bytes;
    case PatternInstruction::Split:
      return step.next->begins | step.other->begins;
    default:
      return step.next->begins;
  }
}

// Fixed-point iteration from the last step to the first: the successor of a step is known by then,
// except at the end of a loop. The sets only grow, and each iteration settles at least one more
// loop, of which there are at most nine.
void FindBegins(PatternProgram& steps) {
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
void FindCertain(PatternProgram& steps) {
  // Number of links that begin to skip a step, minus the number of those that end there.
  std::vector<int> changes(steps.size() + 1, 0);
  const auto addLink = [&](const PatternInstruction& step, const PatternInstruction* target) {
    const std::ptrdiff_t from = &step - steps.data();
    const std::ptrdiff_t to = target - steps.data();
    ++changes[static_cast<std::size_t>(to > from ? from + 1 : to)];
    --changes[static_cast<std::size_t>(to > from ? to : from + 1)];
  };
  for (const PatternInstruction& step : steps) {
    if (step.kind == PatternInstruction::End || step.kind == PatternInstruction::Nop) continue;
    addLink(step, step.next);
    if (step.kind == PatternInstruction::Split) addLink(step, step.other);
  }
  int passing = 0;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    passing += changes[i];
    steps[i].isCertain = passing == 0;
  }
}

void FindWhatFollows(PatternInstruction& star) {
  star.takesMost = !star.bytes.Meets(star.next->begins);
  star.takesAny = star.bytes == kSubjectBytes;
  const PatternInstruction* next = star.next;
  while (next->kind == PatternInstruction::Save) next = next->next;
  if (next->kind != PatternInstruction::Literal) return;
  star.literal = next->literal;
  star.length = next->length;
}

}  // namespace

bool HoldsAt(PatternInstruction::Kind bound, const char* subject, const char* at) {
  switch (bound) {
    case PatternInstruction::LineBegin:
      return at == subject;
    case PatternInstruction::LineEnd:
      return *at == '\0';
    case PatternInstruction::WordBegin:
      return kWordBytes.Has(*at) && (at == subject || !kWordBytes.Has(at[-1]));
    case PatternInstruction::WordEnd:
      return !kWordBytes.Has(*at);
    default:
      return false;
  }
}

PatternError MakePatternProgram(std::string_view code, PatternProgram& steps) {
  const PatternError problem = PatternProgramReader(code, steps).Read();
  if (problem != PatternError::None) return problem;
  MergeAlternatives(steps);
  FindBegins(steps);
  FindCertain(steps);
  for (PatternInstruction& step : steps) {
    if (step.kind == PatternInstruction::Star) FindWhatFollows(step);
  }
  return PatternError::None;
}

}  // namespace tarn
