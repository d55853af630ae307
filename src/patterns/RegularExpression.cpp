#include "patterns/RegularExpression.h"

#include <memory>
#include <string_view>

#include "patterns/CompiledPattern.h"

namespace tarn {
namespace {

bool IsLower(char c) {
  return c >= 'a' && c <= 'z';
}
bool IsUpper(char c) {
  return c >= 'A' && c <= 'Z';
}

// Replaces each letter outside of sets by a set of its upper-case and lower-case form.
std::string WithBothCases(std::string_view pattern) {
  std::string result;
  result.reserve(4 * pattern.size());
  bool isInSet = false;
  for (const char c : pattern) {
    if (c == '[') isInSet = true;
    if (c == ']') isInSet = false;
    if (isInSet || (!IsLower(c) && !IsUpper(c))) {
      result += c;
    } else {
      const char upper = static_cast<char>(c & ~0x20);
      result.append({'[', upper, static_cast<char>(upper | 0x20), ']'});
    }
  }
  return result;
}

bool IsGroup(int group) {
  return group >= 0 && group < kPatternGroups;
}

// Returns the string that the group matched; a view with null data if the group took no part.
std::string_view TextOf(const CCompiledPattern& pattern, int group) {
  if (!IsGroup(group)) return {};
  const char* start = pattern.groupStart[static_cast<std::size_t>(group)];
  const char* end = pattern.groupEnd[static_cast<std::size_t>(group)];
  if (!start || !end) return {};
  return {start, static_cast<std::size_t>(end - start)};
}

}  // namespace

CRegularExpression::CRegularExpression(const char* patternText, bool ignoreCase)
    : program(std::make_unique<CCompiledPattern>().release()) {
  if (patternText && ignoreCase) {
    program->regcomp(WithBothCases(patternText).c_str());
  } else {
    program->regcomp(patternText);
  }
}

CRegularExpression::CRegularExpression(const CRegularExpression& other)
    : subject(other.subject), error(other.error), program(other.program) {
  if (program) ++program->references;
}

CRegularExpression& CRegularExpression::operator=(const CRegularExpression& other) {
  if (this == &other) return *this;
  Release();
  subject = other.subject;
  error = other.error;
  program = other.program;
  if (program) ++program->references;
  return *this;
}

CRegularExpression::~CRegularExpression() {
  Release();
}

void CRegularExpression::Release() {
  if (program && program->references-- == 0) delete program;
}

bool CRegularExpression::IsCompiled() const {
  return program && program->compiled;
}

// Called first by each operation that needs the program. Clears the error.
bool CRegularExpression::HasProgram() {
  error.clear();
  if (program) {
    program->error.clear();
  } else {
    error = PatternErrorText(PatternError::NoProgram);
  }
  return program != nullptr;
}

bool CRegularExpression::Match(const char* text) {
  subject = text;
  if (!HasProgram()) return false;
  if (program->references > 0) {
    // The positions are stored in the pattern, and other handles may still read theirs.
    --program->references;
    program = std::make_unique<CCompiledPattern>(*program).release();
  }
  const bool matches = program->regexec(text);
  program->lastGroup = -1;
  if (!matches) return false;
  for (const char* start : program->groupStart) {
    if (!start) break;
    ++program->lastGroup;
  }
  return true;
}

int CRegularExpression::SubCount() {
  return HasProgram() ? program->lastGroup : -1;
}

int CRegularExpression::SubStart(int group) {
  if (!HasProgram()) return -1;
  const char* start = TextOf(*program, group).data();
  return start ? static_cast<int>(start - subject) : -1;
}

int CRegularExpression::SubLength(int group) {
  if (!HasProgram()) return -1;
  return static_cast<int>(TextOf(*program, group).size());
}

std::string CRegularExpression::SubString(int group) {
  return HasProgram() ? std::string(TextOf(*program, group)) : std::string();
}

std::string CRegularExpression::Substitute(const char* replacement) {
  return HasProgram() ? program->regsub(replacement) : std::string();
}

const std::string& CRegularExpression::GetError() const {
  return program ? program->error : error;
}

}  // namespace tarn
