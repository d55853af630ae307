// The first line of the input is a pattern, the second a template, the rest the subject. Both
// matchers must agree, and respect the bounds of the subject and of their steps.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "patterns/PatternMatcher.h"
#include "patterns/PikeVm.h"
#include "patterns/RegularExpression.h"

namespace {

using tarn::CCompiledPattern;
using tarn::CPatternMatcher;
using tarn::CRegularExpression;
using tarn::PatternSlots;
using tarn::PikeVm;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string line(text.substr(0, end));
  text = end == text.npos ? std::string_view() : text.substr(end + 1);
  return line.c_str();
}

void CheckGroups(const CCompiledPattern& pattern, std::string_view subject) {
  const char* begin = subject.data();
  const char* end = begin + subject.size();
  Require(pattern.groupStart[0] != nullptr);
  for (std::size_t i = 0; i < tarn::kPatternGroups; ++i) {
    const char* groupStart = pattern.groupStart[i];
    const char* groupEnd = pattern.groupEnd[i];
    Require((groupStart == nullptr) == (groupEnd == nullptr));
    Require(!groupStart || (begin <= groupStart && groupStart <= groupEnd && groupEnd <= end));
  }
}

void CheckMatch(CCompiledPattern& pattern, std::string_view subject) {
  CPatternMatcher matcher(pattern, subject.data());
  const bool matches = matcher.Search();
  Require(matcher.GetError().empty());
  Require(matcher.GetStepCount() <= 1024 + (3 * pattern.size + 16) * (subject.size() + 1));
  if (matches) CheckGroups(pattern, subject);

  PikeVm other(*pattern.prepared, pattern.code.get(), subject.data(),
               subject.data() + subject.size());
  PatternSlots slots{};
  Require(other.Search(subject.data(), pattern.anchored, slots) == matches);
  for (std::size_t i = 0; matches && i < tarn::kPatternGroups; ++i) {
    Require(slots[2 * i] == pattern.groupStart[i] && slots[2 * i + 1] == pattern.groupEnd[i]);
  }
  // Requiring a string is only an optimisation and must not change the result.
  Require(pattern.regexec(subject.data()) == matches);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string text = TakeLine(input);
  const std::string replacement = TakeLine(input);
  // A buffer of exact size, so that a read after its end is detected.
  input = input.substr(0, input.find('\0'));
  const auto memory = std::make_unique<char[]>(input.size() + 1);
  input.copy(memory.get(), input.size());
  const std::string_view subject(memory.get(), input.size());

  CCompiledPattern pattern;
  if (pattern.regcomp(text.c_str())) {
    CheckMatch(pattern, subject);
  } else {
    Require(!pattern.error.empty() && !pattern.error.starts_with("internal error"));
  }
  CRegularExpression expression(text, true);
  if (!expression.IsCompiled()) return 0;
  if (expression.Match(subject.data())) {
    Require(expression.SubCount() >= 0);
    const CRegularExpression copy = expression;
    static_cast<void>(expression.Substitute(replacement.c_str()));
    Require(expression.GetError().empty());
  }
  return 0;
}
