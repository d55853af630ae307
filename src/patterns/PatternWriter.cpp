#include "patterns/PatternWriter.h"

#include <cstring>

#include "patterns/PatternNode.h"

namespace tarn {

char* CPatternWriter::EmitNode(int opcode) {
  char* node = end_;
  end_ += kNodeSize;
  *node = static_cast<char>(opcode);
  SetLink(node, 0);
  return node;
}

void CPatternWriter::InsertNode(int opcode, char* node) {
  std::memmove(node + kNodeSize, node, static_cast<std::size_t>(end_ - node));
  end_ += kNodeSize;
  *node = static_cast<char>(opcode);
  SetLink(node, 0);
}

void CPatternWriter::LinkTail(char* node, char* target) {
  while (char* next = NextNode(node)) node = next;
  SetLink(node, OpcodeOf(node) == OpBack ? node - target : target - node);
}

void CPatternWriter::LinkOperandTail(char* node, char* target) {
  if (OpcodeOf(node) == OpBranch) LinkTail(OperandOf(node), target);
}

}  // namespace tarn
