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
std::string_view GroupText(const CCompiledPattern& pattern, int group) {
  if (!IsGroup(group)) return {};
  const char* start = pattern.groupStart[static_cast<std::size_t>(group)];
  const char* end = pattern.groupEnd[static_cast<std::size_t>(group)];
  if (!start || !end) return {};
  return {start, static_cast<std::size_t>(end - start)};
}

}  // namespace

CRegularExpression::CRegularExpression(const char* patternText, bool ignoreCase)
    : program_(std::make_unique<CCompiledPattern>().release()) {
  if (patternText && ignoreCase) {
    program_->regcomp(WithBothCases(patternText).c_str());
  } else {
    program_->regcomp(patternText);
  }
}

CRegularExpression::CRegularExpression(const CRegularExpression& other)
    : subject_(other.subject_), error_(other.error_), program_(other.program_) {
  if (program_) ++program_->references;
}

CRegularExpression& CRegularExpression::operator=(const CRegularExpression& other) {
  if (this == &other) return *this;
  Release();
  subject_ = other.subject_;
  error_ = other.error_;
  program_ = other.program_;
  if (program_) ++program_->references;
  return *this;
}

CRegularExpression::~CRegularExpression() {
  Release();
}

void CRegularExpression::Release() {
  if (program_ && program_->references-- == 0) delete program_;
}

bool CRegularExpression::IsCompiled() const {
  return program_ && program_->compiled;
}

// Called first by each operation that needs the program. Clears the error.
bool CRegularExpression::HasProgram() {
  error_.clear();
  if (program_) {
    program_->error.clear();
  } else {
    error_ = PatternErrorText(PatternError::NoProgram);
  }
  return program_ != nullptr;
}

bool CRegularExpression::Match(const char* text) {
  subject_ = text;
  if (!HasProgram()) return false;
  if (program_->references > 0) {
    // The positions are stored in the pattern, and other handles may still read theirs.
    --program_->references;
    program_ = std::make_unique<CCompiledPattern>(*program_).release();
  }
  const bool matches = program_->regexec(text);
  program_->lastGroup = -1;
  if (!matches) return false;
  for (const char* start : program_->groupStart) {
    if (!start) break;
    ++program_->lastGroup;
  }
  return true;
}

int CRegularExpression::SubCount() {
  return HasProgram() ? program_->lastGroup : -1;
}

int CRegularExpression::SubStart(int group) {
  if (!HasProgram()) return -1;
  const char* start = GroupText(*program_, group).data();
  return start ? static_cast<int>(start - subject_) : -1;
}

int CRegularExpression::SubLength(int group) {
  if (!HasProgram()) return -1;
  return static_cast<int>(GroupText(*program_, group).size());
}

std::string CRegularExpression::SubString(int group) {
  return HasProgram() ? std::string(GroupText(*program_, group)) : std::string();
}

std::string CRegularExpression::Substitute(const char* replacement) {
  return HasProgram() ? program_->regsub(replacement) : std::string();
}

const std::string& CRegularExpression::GetError() const {
  return program_ ? program_->error : error_;
}

}  // namespace tarn
