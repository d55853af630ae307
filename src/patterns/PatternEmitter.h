#pragma once

#include <string>

#include "patterns/PatternError.h"

namespace tarn {

// Reads a pattern and says node by node what its program is made of. It runs twice over each
// pattern: once to measure the program, once to write it; who derives from it decides which. Lives
// during one compilation.
class CPatternEmitter {
 public:
  // What is passed up from a piece of the pattern, as bits.
  enum Flag {
    HasWidth = 1,          // can't match the empty text
    Simple = 2,            // a node that takes exactly one byte
    StartsWithRepeat = 4,  // begins with * or +
  };

  CPatternEmitter() = default;
  CPatternEmitter(const CPatternEmitter&) = delete;
  CPatternEmitter& operator=(const CPatternEmitter&) = delete;
  virtual ~CPatternEmitter() = default;

  // Emits the magic byte and the nodes. False with an error's text when the pattern is faulty.
  bool Parse(const char* pattern);
  const std::string& GetError() const { return error; }
  // The flags of the whole pattern.
  int GetFlags() const { return patternFlags; }

 protected:
  virtual void EmitByte(char byte) = 0;
  // A new node without a link; its operand follows in bytes or nodes.
  virtual char* EmitNode(int opcode) = 0;
  // Puts a new node in front of `node`, which moves up with everything behind it.
  virtual void InsertNode(int opcode, char* node) = 0;
  // Links the last node of the chain that begins with `node` to `target`.
  virtual void LinkTail(char* node, char* target) = 0;
  // The same for the chain in the operand of an OpBranch; nothing for other nodes.
  virtual void LinkOperandTail(char* node, char* target) = 0;

 private:
  // Each reads one kind of construct and gives its first node, null when it is faulty.
  char* Alternation(bool isGroup, int& flags);
  char* Alternative(int& flags);
  char* Piece(int& flags);
  char* Atom(int& flags);
  char* Set();
  char* Literal(int& flags);

  bool ReadEnd(bool isGroup);
  bool ReadRange();
  void EmitRepeat(char repeat, bool isSimple, char* node);
  char* Fail(PatternError code);

  std::string error;
  const char* position = nullptr;
  int nextGroup = 1;
  int patternFlags = 0;
};

}  // namespace tarn
