#include "patterns/CompiledPattern.h"

#include <cstring>

#include "patterns/CompiledProgram.h"
#include "patterns/PatternMatcher.h"
#include "patterns/PatternSizer.h"
#include "patterns/PatternWriter.h"

namespace tarn {
namespace {

// Links are signed 16-bit offsets.
constexpr std::size_t kTooBig = 32767;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

CCompiledPattern::CCompiledPattern(const CCompiledPattern& other)
    : size(other.size),
      groupStart(other.groupStart),
      groupEnd(other.groupEnd),
      firstChar(other.firstChar),
      anchored(other.anchored),
      requiredLength(other.requiredLength),
      compiled(other.compiled),
      lastGroup(other.lastGroup),
      prepared(other.prepared) {
  if (!other.code) return;
  code = std::make_unique<char[]>(size);
  std::memcpy(code.get(), other.code.get(), size);
  if (other.required) required = code.get() + (other.required - other.code.get());
}

bool CCompiledPattern::Fail(PatternError problem) {
  error = PatternErrorText(problem);
  return false;
}

bool CCompiledPattern::HasProgram() const {
  return code && static_cast<unsigned char>(code[0]) == kPatternMagic;
}

bool CCompiledPattern::regcomp(const char* pattern) {
  if (!pattern) return Fail(PatternError::NullPattern);
  CPatternSizer sizer;
  if (!sizer.Parse(pattern)) {
    error = sizer.GetError();
    return false;
  }
  if (sizer.GetSize() >= kTooBig) return Fail(PatternError::TooBig);
  size = static_cast<std::uint32_t>(sizer.GetSize());
  code = std::make_unique<char[]>(size);
  CPatternWriter writer(code.get());
  compiled = writer.Parse(pattern);
  error = writer.GetError();
  if (compiled) FindShortcuts((writer.GetFlags() & CPatternEmitter::StartsWithRepeat) != 0);
  return compiled;
}

void CCompiledPattern::FindShortcuts(bool startsWithRepeat) {
  const char* branch = code.get() + 1;
  if (OpcodeOf(NextNode(branch)) != OpEnd) return;
  const char* first = OperandOf(branch);
  if (OpcodeOf(first) == OpExactly) firstChar = *OperandOf(first);
  if (OpcodeOf(first) == OpLineBegin) anchored = true;
  if (!startsWithRepeat) return;
  for (const char* node = first; node; node = NextNode(node)) {
    if (OpcodeOf(node) != OpExactly) continue;
    const auto length = static_cast<std::uint32_t>(std::strlen(OperandOf(node)));
    if (length < requiredLength) continue;
    required = OperandOf(node);
    requiredLength = length;
  }
}

bool CCompiledPattern::regexec(const char* text) {
  groupStart.fill(nullptr);
  groupEnd.fill(nullptr);
  if (!text) return Fail(PatternError::NullText);
  if (!HasProgram()) return Fail(PatternError::CorruptedProgram);
  if (required && !std::strstr(text, required)) return false;
  // The first bytes rule out a match for most subjects that an anchored pattern is tried on.
  if (anchored && prepared && !prepared->filter.MayStartAt(text)) return false;
  CPatternMatcher matcher(*this, text);
  if (matcher.Search()) return true;
  error = matcher.GetError();
  return false;
}

std::string CCompiledPattern::regsub(const char* replacement) {
  if (!replacement) {
    Fail(PatternError::NullTemplate);
    return {};
  }
  if (!HasProgram()) {
    Fail(PatternError::CorruptedProgramInSubstitute);
    return {};
  }
  std::string result;
  for (const char* at = replacement; *at != '\0'; ++at) {
    int group = -1;
    char character = *at;
    if (character == '&') {
      group = 0;
    } else if (character == '\\' && IsDigit(at[1])) {
      group = *++at - '0';
    } else if (character == '\\' && (at[1] == '\\' || at[1] == '&')) {
      character = *++at;
    }
    if (group < 0) {
      result += character;
    } else if (!AppendGroup(group, result)) {
      return {};
    }
  }
  return result;
}

bool CCompiledPattern::AppendGroup(int group, std::string& result) {
  const char* start = groupStart[static_cast<std::size_t>(group)];
  const char* end = groupEnd[static_cast<std::size_t>(group)];
  if (!start || !end || end <= start) return true;
  const std::string_view text(start, static_cast<std::size_t>(end - start));
  if (text.find('\0') != text.npos) return Fail(PatternError::DamagedSubject);
  result += text;
  return true;
}

}  // namespace tarn
