#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "patterns/PatternProgram.h"

namespace tarn {

// Reads the nodes of a program in order, first byte to last, and then resolves the links between
// the steps. Linear in the size of the program. Exists during one `MakePatternProgram()`.
class PatternProgramReader {
 public:
  // `result` is borrowed.
  PatternProgramReader(std::string_view programCode, PatternProgram& result)
      : code_(programCode), steps_(result), stepAt_(programCode.size(), kNone) {}

  // Reads the whole program. Returns an error if it is damaged.
  PatternError Read();

 private:
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};
  // Links of a step as offsets in the code. 0, where there is never a node, for a missing link.
  struct Links {
    std::uint32_t next;
    std::uint32_t other;
  };

  // The first three advance `offset` past what they read.
  PatternError ReadNode(std::size_t& offset);
  PatternError ReadRepeat(std::size_t& offset);
  bool ReadBytes(std::size_t& offset, ByteSet& bytes) const;
  // Appends a step for the node at `offset`, with the offset of its successor.
  PatternInstruction& AddStep(std::size_t offset, PatternInstruction::Kind kind, std::size_t next);
  std::size_t TargetOf(std::size_t offset) const;
  const PatternInstruction* StepAt(std::size_t offset) const;
  // Replaces offsets by pointers to steps. Returns false if a link leads to no node.
  bool FollowLinks();
  // Makes links skip idle nodes. Returns false if idle nodes form a cycle.
  bool SkipNops();

  bool HasNodeAt(std::size_t offset) const { return code_.size() - offset >= kNodeSize; }
  unsigned char OpcodeAt(std::size_t offset) const { return OpcodeOf(&code_[offset]); }
  std::string_view OperandAt(std::size_t offset) const {
    const std::string_view operand = code_.substr(offset + kNodeSize);
    return operand.substr(0, operand.find('\0'));
  }

  std::string_view code_;
  PatternProgram& steps_;
  std::vector<Links> links_;
  std::vector<std::uint32_t> stepAt_;
};

}  // namespace tarn
