#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "patterns/PatternError.h"
#include "patterns/PatternNode.h"

namespace tarn {

struct CompiledProgram;

// Compiled pattern and the positions of its last match. Compiled once and shared by handles, which
// count themselves in `references`. Belongs to one thread. A failed operation sets `error`.
class CCompiledPattern {
 public:
  using GroupPositions = std::array<const char*, kPatternGroups>;

  CCompiledPattern() = default;
  // Creates a copy that isn't shared by any handle.
  CCompiledPattern(const CCompiledPattern& other);
  CCompiledPattern& operator=(const CCompiledPattern&) = delete;

  // Compiles `pattern`. Returns false and sets `error` if the pattern is invalid or its program is
  // too big.
  bool regcomp(const char* pattern);
  // Finds the first match and saves the positions of its groups in `text`.
  bool regexec(const char* text);
  // Returns the template with the groups of the last match substituted; for the syntax see
  // `CRegularExpression::Substitute()`. On error, returns an empty string and sets `error`.
  std::string regsub(const char* replacement);

  std::string error;
  // Size of the program in bytes.
  std::uint32_t size = 0;
  // Start and end of each group in the last match; nullptr for a group that took no part.
  GroupPositions groupStart{};
  GroupPositions groupEnd{};
  // First character of every match, or 0 if the pattern doesn't determine it.
  char firstChar = '\0';
  // A match can begin only at the start of the subject.
  bool anchored = false;
  // String in the program that every match contains, or nullptr.
  const char* required = nullptr;
  std::uint32_t requiredLength = 0;
  // Program; for its format see PatternNode.h.
  std::unique_ptr<char[]> code;
  bool compiled = false;
  // Number of handles that share this object, not counting the first.
  std::uint32_t references = 0;
  // Number of the last group before the first one that took no part in the last match; -1 if there
  // was no match.
  std::int32_t lastGroup = -1;
  // Program prepared for matching. Created by the first match; shared with clones.
  std::shared_ptr<const CompiledProgram> prepared;

  std::string_view GetProgram() const { return {code.get(), code ? size : 0}; }

 private:
  bool Fail(PatternError problem);
  bool HasProgram() const;
  void FindShortcuts(bool startsWithRepeat);
  bool AppendGroup(int group, std::string& result);
};

}  // namespace tarn
