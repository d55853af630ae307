#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "patterns/PatternSteps.h"

namespace tarn {

// Reads a program from its first byte to its last, one node after the other as they lie there, and
// then links the steps. Lives during one MakePatternSteps.
class PatternStepReader {
 public:
  // `result` is borrowed.
  PatternStepReader(std::string_view programCode, PatternSteps& result)
      : code(programCode), steps(result), stepAt(programCode.size(), kNone) {}

  PatternError Read();

 private:
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};
  // Of a step, as offsets in the code; 0, where no node is, for a link that leads nowhere.
  struct Links {
    std::uint32_t next;
    std::uint32_t other;
  };

  // The first three step over what they read.
  PatternError ReadNode(std::size_t& offset);
  PatternError ReadRepeat(std::size_t& offset);
  bool ReadBytes(std::size_t& offset, ByteSet& bytes) const;
  PatternStep& AddStep(std::size_t offset, PatternStep::Kind kind, std::size_t next);
  std::size_t TargetOf(std::size_t offset) const;
  const PatternStep* StepAt(std::size_t offset) const;
  bool FollowLinks();
  bool SkipJumps();

  bool HasNodeAt(std::size_t offset) const { return code.size() - offset >= kNodeSize; }
  unsigned char OpcodeAt(std::size_t offset) const { return OpcodeOf(&code[offset]); }
  std::string_view OperandAt(std::size_t offset) const {
    const std::string_view operand = code.substr(offset + kNodeSize);
    return operand.substr(0, operand.find('\0'));
  }

  std::string_view code;
  PatternSteps& steps;
  std::vector<Links> links;
  std::vector<std::uint32_t> stepAt;
};

}  // namespace tarn
