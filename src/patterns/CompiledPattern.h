#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "patterns/PatternError.h"
#include "patterns/PatternNode.h"

namespace tarn {

struct PatternPlan;

// A compiled pattern and the positions of its last match. Built once; handles share it, and count
// themselves in `references`. Belongs to one thread. Failures leave an error's text.
class CCompiledPattern {
 public:
  using GroupPositions = std::array<const char*, kPatternGroups>;

  CCompiledPattern() = default;
  // A clone, which no handle shares.
  CCompiledPattern(const CCompiledPattern& other);
  CCompiledPattern& operator=(const CCompiledPattern&) = delete;

  // Compiles; false with an error when the pattern is faulty or its program gets too big.
  bool regcomp(const char* pattern);
  // Finds the first match and notes its groups' positions in `text`.
  bool regexec(const char* text);
  // The template with the groups of the last match in it; CRegularExpression::Substitute tells how.
  // Empty with an error on failure.
  std::string regsub(const char* replacement);

  std::string error;
  // Length of the program.
  std::uint32_t size = 0;
  // Where the groups of the last match start and end; null for one that took no part.
  GroupPositions groupStart{};
  GroupPositions groupEnd{};
  // The character that every match begins with, 0 when the pattern fixes none.
  char firstChar = '\0';
  // Only the start of the subject can match.
  bool anchored = false;
  // A text in the program that every match contains, or null.
  const char* required = nullptr;
  std::uint32_t requiredLength = 0;
  // The program; PatternNode.h tells its form.
  std::unique_ptr<char[]> code;
  bool compiled = false;
  // How many handles share this one, besides the first.
  std::uint32_t references = 0;
  // The last of the groups, counted from the start, that took part in the last match; -1 when there
  // was no match.
  std::int32_t lastGroup = -1;
  // The program made ready for matching; the first match makes it, and clones share it.
  std::shared_ptr<const PatternPlan> plan;

  std::string_view GetProgram() const { return {code.get(), code ? size : 0}; }

 private:
  bool Fail(PatternError problem);
  bool HasProgram() const;
  void FindShortcuts(bool startsWithRepeat);
  bool AppendGroup(int group, std::string& result);
};

}  // namespace tarn
