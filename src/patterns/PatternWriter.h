#pragma once

#include "patterns/PatternEmitter.h"

namespace tarn {

// The second pass: writes the program to a place that the first pass has measured. The place is the
// caller's.
class CPatternWriter : public CPatternEmitter {
 public:
  explicit CPatternWriter(char* code) : end(code) {}

 private:
  void EmitByte(char byte) override { *end++ = byte; }
  char* EmitNode(int opcode) override;
  void InsertNode(int opcode, char* node) override;
  void LinkTail(char* node, char* target) override;
  void LinkOperandTail(char* node, char* target) override;

  // Behind what has been written.
  char* end;
};

}  // namespace tarn
