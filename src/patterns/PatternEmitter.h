#pragma once

#include <string>

#include "patterns/PatternError.h"

namespace tarn {

// Parser that reads a pattern and emits the nodes of its program. Runs twice per pattern: once to
// measure the program (CPatternSizer) and once to write it (CPatternWriter). Exists during one
// compilation. Time is linear in the length of the pattern, except for the moves in `InsertNode()`.
class CPatternEmitter {
 public:
  // Flags that are passed up from a part of the pattern.
  enum Flag {
    HasWidth = 1,          // can't match the empty string
    Simple = 2,            // a node that consumes exactly one byte
    StartsWithRepeat = 4,  // begins with * or +
  };

  CPatternEmitter() = default;
  CPatternEmitter(const CPatternEmitter&) = delete;
  CPatternEmitter& operator=(const CPatternEmitter&) = delete;
  virtual ~CPatternEmitter() = default;

  // Emits the magic byte and the nodes. Returns false and sets the error if the pattern is invalid.
  bool Parse(const char* pattern);
  const std::string& GetError() const { return error_; }
  // Returns the flags of the whole pattern.
  int GetFlags() const { return patternFlags_; }

 protected:
  virtual void EmitByte(char byte) = 0;
  // Emits a new node without a link; its operand follows as bytes or nodes.
  virtual char* EmitNode(int opcode) = 0;
  // Inserts a new node before `node`, which moves up together with everything after it.
  virtual void InsertNode(int opcode, char* node) = 0;
  // Links the last node of the chain that begins with `node` to `target`.
  virtual void LinkTail(char* node, char* target) = 0;
  // Like `LinkTail()`, but for the chain in the operand of an OpBranch; no-op for other nodes.
  virtual void LinkOperandTail(char* node, char* target) = 0;

 private:
  // Each reads one kind of construct and returns its first node, or nullptr if it is invalid.
  char* Alternation(bool isGroup, int& flags);
  char* Alternative(int& flags);
  char* Piece(int& flags);
  char* Atom(int& flags);
  char* Set();
  char* Literal(int& flags);

  bool ReadEnd(bool isGroup);
  bool ReadRange();
  // Emits the nodes of a repeat for the atom at `node`.
  void EmitRepeat(char repeat, bool isSimple, char* node);
  char* Fail(PatternError code);

  std::string error_;
  const char* position_ = nullptr;
  int nextGroup_ = 1;
  int patternFlags_ = 0;
};

}  // namespace tarn
