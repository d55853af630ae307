#include "patterns/PatternProgramReader.h"

#include <array>

namespace tarn {
namespace {

// Step kinds by opcode. Repeats and groups are handled separately.
constexpr std::array kKinds = {
    PatternInstruction::End,       PatternInstruction::LineBegin, PatternInstruction::LineEnd,
    PatternInstruction::MatchByte, PatternInstruction::MatchByte, PatternInstruction::MatchByte,
    PatternInstruction::Nop,       PatternInstruction::Nop,       PatternInstruction::Literal,
    PatternInstruction::Nop,       PatternInstruction::Star,      PatternInstruction::Star,
    PatternInstruction::WordBegin, PatternInstruction::WordEnd,
};

// Copying this takes half the time of clearing a step.
constexpr PatternInstruction kBlank;

}  // namespace

PatternError PatternProgramReader::Read() {
  // A node has at least three bytes.
  const std::size_t most = code_.size() / kNodeSize + 1;
  steps_.clear();
  steps_.reserve(most);
  links_.reserve(most);
  for (std::size_t offset = 1; offset < code_.size();) {
    const PatternError problem = ReadNode(offset);
    if (problem != PatternError::None) return problem;
  }
  if (steps_.empty() || !FollowLinks() || !SkipNops()) return PatternError::CorruptedChain;
  return PatternError::None;
}

PatternInstruction& PatternProgramReader::AddStep(std::size_t offset, PatternInstruction::Kind kind,
                                                  std::size_t next) {
  stepAt_[offset] = static_cast<std::uint32_t>(steps_.size());
  links_.push_back({static_cast<std::uint32_t>(next), 0});
  steps_.push_back(kBlank);
  steps_.back().kind = kind;
  return steps_.back();
}

std::size_t PatternProgramReader::TargetOf(std::size_t offset) const {
  const std::ptrdiff_t link = LinkOf(&code_[offset]);
  const auto from = static_cast<std::ptrdiff_t>(offset);
  const std::ptrdiff_t target = OpcodeAt(offset) == OpBack ? from - link : from + link;
  const bool isInside = target > 0 && target < static_cast<std::ptrdiff_t>(code_.size());
  return link != 0 && isInside ? static_cast<std::size_t>(target) : 0;
}

PatternError PatternProgramReader::ReadNode(std::size_t& offset) {
  if (!HasNodeAt(offset)) return PatternError::CorruptedChain;
  const std::size_t start = offset;
  const unsigned char opcode = OpcodeAt(start);
  const std::size_t target = TargetOf(start);
  const std::size_t operand = start + kNodeSize;
  offset = operand;
  if (opcode >= kKinds.size()) {
    const bool isClose = opcode > OpClose;
    const int group = opcode - (isClose ? OpClose : OpOpen);
    if (group < 1 || group >= kPatternGroups) return PatternError::CorruptedOpcode;
    PatternInstruction& save = AddStep(start, PatternInstruction::Save, target);
    save.slot = static_cast<std::uint8_t>(2 * group + (isClose ? 1 : 0));
    return PatternError::None;
  }
  const PatternInstruction::Kind kind = kKinds[opcode];
  if (kind == PatternInstruction::Star) {
    offset = start;
    return ReadRepeat(offset);
  }
  PatternInstruction& step = AddStep(start, kind, target);
  if (kind == PatternInstruction::MatchByte) {
    offset = start;
    if (!ReadBytes(offset, step.bytes)) return PatternError::CorruptedChain;
  } else if (kind == PatternInstruction::Literal) {
    const std::size_t length = OperandAt(start).size();
    offset += length + 1;
    if (length == 0 || offset > code_.size()) return PatternError::CorruptedChain;
    step.literal = static_cast<std::uint16_t>(operand);
    step.length = static_cast<std::uint16_t>(length);
    step.bytes.Add(code_[operand]);
  } else if (opcode == OpBranch) {
    links_.back().next = static_cast<std::uint32_t>(operand);
    // Without another branch after it there is no choice.
    if (target != 0 && OpcodeAt(target) == OpBranch) {
      step.kind = PatternInstruction::Split;
      links_.back().other = static_cast<std::uint32_t>(target);
    }
  }
  return PatternError::None;
}

// "One or more" becomes a single-byte step followed by a star. The star is registered at the offset
// of the operand, which no link leads to.
PatternError PatternProgramReader::ReadRepeat(std::size_t& offset) {
  const std::size_t start = offset;
  const std::size_t operand = start + kNodeSize;
  if (!HasNodeAt(operand)) return PatternError::CorruptedChain;
  ByteSet bytes;
  offset = operand;
  if (!ReadBytes(offset, bytes)) return PatternError::RepeatOfNoSimpleNode;
  const bool isPlus = OpcodeAt(start) == OpPlus;
  if (isPlus) AddStep(start, PatternInstruction::MatchByte, operand).bytes = bytes;
  AddStep(isPlus ? operand : start, PatternInstruction::Star, TargetOf(start)).bytes = bytes;
  return PatternError::None;
}

// Reads the byte set of a node that consumes exactly one byte. Returns false if the node is of
// another kind.
bool PatternProgramReader::ReadBytes(std::size_t& offset, ByteSet& bytes) const {
  const unsigned char opcode = OpcodeAt(offset);
  if (opcode == OpAny) {
    bytes = kSubjectBytes;
    offset += kNodeSize;
    return true;
  }
  const std::string_view operand = OperandAt(offset);
  offset += kNodeSize + operand.size() + 1;
  if (offset > code_.size()) return false;
  bytes = ByteSet(operand);
  if (opcode == OpAnyBut) bytes = ~bytes & kSubjectBytes;
  return opcode == OpAnyOf || opcode == OpAnyBut || (opcode == OpExactly && operand.size() == 1);
}

// Returns nullptr if no node begins at `offset`.
const PatternInstruction* PatternProgramReader::StepAt(std::size_t offset) const {
  return stepAt_[offset] == kNone ? nullptr : &steps_[stepAt_[offset]];
}

bool PatternProgramReader::FollowLinks() {
  for (std::size_t i = 0; i < steps_.size(); ++i) {
    PatternInstruction& step = steps_[i];
    if (step.kind == PatternInstruction::End) continue;
    step.next = StepAt(links_[i].next);
    if (step.kind == PatternInstruction::Split) step.other = StepAt(links_[i].other);
    if (!step.next || (step.kind == PatternInstruction::Split && !step.other)) return false;
  }
  return true;
}

bool PatternProgramReader::SkipNops() {
  const auto skip = [this](const PatternInstruction*& target) {
    // Idle nodes that form a cycle are damage.
    for (std::size_t i = 0; target && target->kind == PatternInstruction::Nop; ++i) {
      if (i == steps_.size()) return false;
      target = target->next;
    }
    return true;
  };
  for (PatternInstruction& step : steps_) {
    if (!skip(step.next) || !skip(step.other)) return false;
  }
  // A match begins at the first step, so an idle first node is replaced by the step it leads to.
  if (steps_[0].kind == PatternInstruction::Nop) steps_[0] = PatternInstruction(*steps_[0].next);
  return true;
}

}  // namespace tarn
