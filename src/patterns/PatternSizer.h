#pragma once

#include <cstddef>

#include "patterns/PatternEmitter.h"
#include "patterns/PatternNode.h"

namespace tarn {

// The first pass: measures the program.
class CPatternSizer : public CPatternEmitter {
 public:
  // Bytes of the program, the magic one included.
  std::size_t GetSize() const { return size; }

 private:
  void EmitByte(char) override { ++size; }
  char* EmitNode(int) override {
    size += kNodeSize;
    return dummy;
  }
  void InsertNode(int, char*) override { size += kNodeSize; }
  void LinkTail(char*, char*) override {}
  void LinkOperandTail(char*, char*) override {}

  std::size_t size = 0;
  // Stands for every node, so that links can be walked in this pass too.
  char dummy[kNodeSize] = {OpNothing, 0, 0};
};

}  // namespace tarn
