#pragma once

namespace tarn {

// Errors of compiling, matching and substituting. The values are the numbers of their messages.
enum class PatternError : int {
  None = 0,
  NullText = 1,
  CorruptedProgram = 2,
  CorruptedOpcode = 3,
  CorruptedChain = 4,
  RepeatOfNoSimpleNode = 5,
  NullTemplate = 7,
  CorruptedProgramInSubstitute = 8,
  DamagedSubject = 9,
  NullPattern = 10,
  TooBig = 11,
  TooManyGroups = 12,
  UnterminatedGroup = 13,
  UnmatchedClose = 14,
  JunkOnEnd = 15,
  EmptyOperand = 16,
  NestedRepeat = 17,
  InvalidRange = 18,
  UnmatchedSet = 19,
  EndInsteadOfAtom = 20,
  RepeatOfNothing = 21,
  TrailingBackslash = 22,
  NoProgram = 24,
};

// Returns the message of an error number, or "Unknown error" if it has none.
const char* PatternErrorText(int code);
inline const char* PatternErrorText(PatternError error) {
  return PatternErrorText(static_cast<int>(error));
}

}  // namespace tarn
