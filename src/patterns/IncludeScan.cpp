#include "patterns/IncludeScan.h"

#include <algorithm>
#include <array>

#include "patterns/SourceText.h"
#include "patterns/TestedNames.h"

namespace tarn {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::array<std::string_view, 4> kDirectives = {"include", "include_next", "import",
                                                         "embed"};

using Names = std::vector<std::string>;

void AddOnce(Names& names, std::string_view name) {
  const bool isKnown = std::find(names.begin(), names.end(), name) != names.end();
  if (!name.empty() && !isKnown) names.emplace_back(name);
}

// Returns the name at the start of the line, up to the delimiter that ends it; empty if there is
// none.
std::string_view DelimitedName(std::string_view line, std::string_view openers) {
  SkipSpace(line);
  if (line.empty() || openers.find(line.front()) == openers.npos) return {};
  const std::size_t end = line.find(line.front() == '<' ? '>' : line.front(), 1);
  return end == line.npos ? std::string_view() : line.substr(1, end - 1);
}

// Returns the name in an "#include" or related directive, which must be first on its line.
std::string_view PreprocessorName(std::string_view line) {
  SkipSpace(line);
  if (line.empty() || line.front() != '#') return {};
  line.remove_prefix(1);
  SkipSpace(line);
  const std::string_view word = TakeWord(line);
  const bool isDirective =
      std::find(kDirectives.begin(), kDirectives.end(), word) != kDirectives.end();
  return isDirective ? DelimitedName(line, "\"<") : std::string_view();
}

bool EqualsLower(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(), [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
  });
}

// Assembler directives may follow a label and are case-insensitive. Some assemblers accept any
// delimiter around the name.
void AddAssemblerNames(std::string_view line, Names& names) {
  for (std::size_t dot = line.find('.'); dot != line.npos; dot = line.find('.', dot + 1)) {
    std::string_view rest = line.substr(dot + 1);
    const std::string_view word = TakeWord(rest);
    if (!EqualsLower(word, "include") && !EqualsLower(word, "incbin")) continue;
    SkipSpace(rest);
    const bool isQuoted = rest.starts_with("\\\"");  // within a string in C
    if (isQuoted) rest.remove_prefix(1);
    std::string_view name = DelimitedName(rest, "\"/");
    if (isQuoted && name.ends_with('\\')) name.remove_suffix(1);
    AddOnce(names, name);
  }
}

void AddTestedNames(std::string_view line, Names& names) {
  constexpr std::string_view kStart = "__has_";
  for (std::size_t at = line.find(kStart); at != line.npos; at = line.find(kStart, at + 1)) {
    std::string_view rest = line.substr(at);
    if (!IsFileTest(TakeWord(rest))) continue;
    SkipSpace(rest);
    if (rest.empty() || rest.front() != '(') continue;
    AddOnce(names, DelimitedName(rest.substr(1), "\"<"));
  }
}

void AddNames(std::string_view text, Names& names) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    AddOnce(names, PreprocessorName(line));
    AddAssemblerNames(line, names);
    AddTestedNames(line, names);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

bool IsScriptSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ',' || c == ';';
}

// Removes the next word, quoted name or parenthesis from a linker script and returns it; empty at
// the end.
std::string_view TakeScriptToken(std::string_view& text) {
  while (!text.empty() && IsScriptSpace(text.front())) text.remove_prefix(1);
  if (text.empty()) return {};
  std::size_t length = 1;
  if (text.front() == '"') {
    const std::size_t end = text.find('"', 1);
    const std::string_view name = text.substr(1, end == text.npos ? end : end - 1);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    return name.empty() ? std::string_view(" ") : name;
  }
  const auto ends = [](char c) { return IsScriptSpace(c) || c == '(' || c == ')' || c == '"'; };
  if (text.front() != '(' && text.front() != ')') {
    while (length < text.size() && !ends(text[length])) ++length;
  }
  const std::string_view token = text.substr(0, length);
  text.remove_prefix(length);
  return token;
}

}  // namespace

// A comment that isn't one for the compiler must not hide a directive, so the lines are scanned
// twice: with comments kept and with comments removed.
std::vector<std::string> FindIncludes(std::string_view text) {
  Names names;
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  AddNames(text, names);
  const bool isPlain = text.find("/*") == text.npos && text.find("\\\n") == text.npos &&
                       text.find("\\\r\n") == text.npos;
  if (!isPlain) AddNames(WithoutComments(JoinLines(text)), names);
  return names;
}

ScriptNames FindScriptNames(std::string_view text) {
  ScriptNames found;
  const std::string plain = WithoutComments(text);
  std::string_view rest = plain;
  int depth = 0;  // nesting inside a list of inputs
  bool isFolder = false;
  std::string_view before;
  for (std::string_view token; !(token = TakeScriptToken(rest)).empty(); before = token) {
    if (token == "(") {
      const bool isList = before == "INPUT" || before == "GROUP" || before == "STARTUP";
      if (depth > 0 || isList) ++depth;
      isFolder = before == "SEARCH_DIR";
    } else if (token == ")") {
      if (depth > 0) --depth;
      isFolder = false;
    } else if (isFolder) {
      AddOnce(found.folders, token);
    } else if (before == "INCLUDE" || (depth > 0 && token != "AS_NEEDED")) {
      AddOnce(found.inputs, token);
    }
  }
  return found;
}

}  // namespace tarn
