#pragma once

#include <cstddef>
#include <string_view>

#include "hosts/core/lua/ScriptBudget.h"

namespace tarn::host {

// Lua patterns with a bounded running time: backtracking matcher that charges the budget one step
// per comparison. The language's own matcher can't be interrupted, and takes exponential time for
// some short patterns. Same syntax and same matches as the original.
//
// Trivially destructible, because a script error may jump over it (longjmp).
class ScriptPattern {
 public:
  static constexpr int kMaxCaptures = 32;

  // Strings and budget are borrowed. `text` is the subject; `pattern` is passed without its anchor.
  ScriptPattern(std::string_view searchedText, std::string_view patternText,
                ScriptBudget& scriptBudget)
      : text_(searchedText), pattern_(patternText), budget_(&scriptBudget) {}

  // Returns the end of the match that starts at this offset; kNone if there is none or on error.
  std::size_t MatchAt(std::size_t offset);
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  // Returns what is wrong with the pattern, or nullptr. An exhausted budget is not an error of the
  // pattern.
  const char* GetProblem() const { return problem_; }

  // Returns the number of the capture that the problem refers to, or -1.
  int GetWrongCapture() const { return wrongCapture_; }

  // Captures of the last match, in order of their opening.
  struct Capture {
    std::size_t start = 0;
    std::size_t length = 0;  // or kOpen, kPosition
  };
  static constexpr std::size_t kOpen = static_cast<std::size_t>(-1);
  static constexpr std::size_t kPosition = static_cast<std::size_t>(-2);
  int GetCaptureCount() const { return captureCount_; }
  const Capture& GetCapture(int index) const { return captures_[index]; }

 private:
  std::size_t Match(std::size_t at, std::size_t item);
  std::size_t MatchItem(std::size_t at, std::size_t item, bool& isDone, std::size_t& nextItem);
  std::size_t MatchSpecial(std::size_t at, std::size_t item, std::size_t& nextItem);
  std::size_t MatchRepeatable(std::size_t at, std::size_t item, bool& isDone,
                              std::size_t& nextItem);
  std::size_t MatchMost(std::size_t at, std::size_t item, std::size_t itemEnd);
  std::size_t MatchFewest(std::size_t at, std::size_t item, std::size_t itemEnd);
  std::size_t MatchBalanced(std::size_t at, std::size_t item);
  std::size_t MatchRepeated(std::size_t at, std::size_t item);
  std::size_t OpenCapture(std::size_t at, std::size_t item, std::size_t length);
  std::size_t CloseCapture(std::size_t at, std::size_t item);
  bool IsFrontier(std::size_t at, std::size_t set, std::size_t setEnd) const;
  bool Spend(std::size_t steps);

  std::size_t FindItemEnd(std::size_t item);
  bool MatchesOne(std::size_t at, std::size_t item, std::size_t itemEnd);
  bool IsInSet(unsigned char byte, std::size_t set, std::size_t setEnd) const;
  std::size_t Fail(const char* what);
  bool IsOver() const { return problem_ != nullptr || isSpent_; }

  std::string_view text_;
  std::string_view pattern_;
  ScriptBudget* budget_;
  const char* problem_ = nullptr;
  int wrongCapture_ = -1;
  bool isSpent_ = false;
  int depth_ = 0;
  int captureCount_ = 0;
  Capture captures_[kMaxCaptures];
};

}  // namespace tarn::host
