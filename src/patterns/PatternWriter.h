#pragma once

#include "patterns/PatternEmitter.h"

namespace tarn {

// Second pass of the compilation: writes the program to a buffer that the caller allocated with the
// size from the first pass.
class CPatternWriter : public CPatternEmitter {
 public:
  explicit CPatternWriter(char* code) : end_(code) {}

 private:
  void EmitByte(char byte) override { *end_++ = byte; }
  char* EmitNode(int opcode) override;
  void InsertNode(int opcode, char* node) override;
  void LinkTail(char* node, char* target) override;
  void LinkOperandTail(char* node, char* target) override;

  // Position after the bytes written so far.
  char* end_;
};

}  // namespace tarn
