#pragma once

#include <cstddef>

#include "patterns/PatternEmitter.h"
#include "patterns/PatternNode.h"

namespace tarn {

// First pass of the compilation: measures the program.
class CPatternSizer : public CPatternEmitter {
 public:
  // Returns the size of the program in bytes, including the magic byte.
  std::size_t GetSize() const { return size_; }

 private:
  void EmitByte(char) override { ++size_; }
  char* EmitNode(int) override {
    size_ += kNodeSize;
    return dummy_;
  }
  void InsertNode(int, char*) override { size_ += kNodeSize; }
  void LinkTail(char*, char*) override {}
  void LinkOperandTail(char*, char*) override {}

  std::size_t size_ = 0;
  // Substitute for every node, so that links can be followed in this pass too.
  char dummy_[kNodeSize] = {OpNothing, 0, 0};
};

}  // namespace tarn
