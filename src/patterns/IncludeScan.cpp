#include "patterns/IncludeScan.h"

#include <algorithm>
#include <array>

namespace tarn {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::array<std::string_view, 3> kDirectives = {"include", "include_next", "import"};

using Names = std::vector<std::string>;

void AddOnce(Names& names, std::string_view name) {
  const bool isKnown = std::find(names.begin(), names.end(), name) != names.end();
  if (!name.empty() && !isKnown) names.emplace_back(name);
}

bool IsWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

void SkipSpace(std::string_view& line) {
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
}

std::string_view TakeWord(std::string_view& line) {
  std::size_t length = 0;
  while (length < line.size() && IsWordCharacter(line[length])) ++length;
  const std::string_view word = line.substr(0, length);
  line.remove_prefix(length);
  return word;
}

// Returns the name at the start of the line, up to the delimiter that ends it.
std::string_view DelimitedName(std::string_view line, std::string_view openers) {
  SkipSpace(line);
  if (line.empty() || openers.find(line.front()) == openers.npos) return {};
  const std::size_t end = line.find(line.front() == '<' ? '>' : line.front(), 1);
  return end == line.npos ? std::string_view() : line.substr(1, end - 1);
}

// "#include" and its relatives, which open their line.
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

// Assembler directives may follow a label, in any case of letters. Some assemblers take any
// delimiter around the name.
void AddAssemblerNames(std::string_view line, Names& names) {
  for (std::size_t dot = line.find('.'); dot != line.npos; dot = line.find('.', dot + 1)) {
    std::string_view rest = line.substr(dot + 1);
    const std::string_view word = TakeWord(rest);
    if (!EqualsLower(word, "include") && !EqualsLower(word, "incbin")) continue;
    AddOnce(names, DelimitedName(rest, "\"/"));
  }
}

void AddTestedNames(std::string_view line, Names& names) {
  constexpr std::string_view kTest = "__has_include";
  for (std::size_t at = line.find(kTest); at != line.npos; at = line.find(kTest, at + 1)) {
    std::string_view rest = line.substr(at + kTest.size());
    TakeWord(rest);  // __has_include_next
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

// Length of a backslash and the line end after it, 0 if there is none.
std::size_t SpliceAt(std::string_view text, std::size_t at) {
  if (text.substr(at, 2) == "\\\n") return 2;
  return text.substr(at, 3) == "\\\r\n" ? 3 : 0;
}

std::string JoinLines(std::string_view text) {
  std::string joined;
  joined.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t splice = text[at] == '\\' ? SpliceAt(text, at) : 0;
    if (splice == 0) joined += text[at];
    at += std::max<std::size_t>(splice, 1);
  }
  return joined;
}

// The text with a space for each comment between /* and */. What looks like one in a string that
// isn't closed on its line is a comment.
std::string WithoutComments(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  char quote = '\0';
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (quote == '\0' && text.substr(at, 2) == "/*") {
      const std::size_t end = text.find("*/", at + 2);
      plain += ' ';
      if (end == text.npos) break;
      at = end + 1;
      continue;
    }
    const bool isEscaped = at > 0 && text[at - 1] == '\\';
    if (c == '\n') {
      quote = '\0';
    } else if (c == '"' && !isEscaped) {
      quote = quote == '"' ? '\0' : '"';
    }
    plain += c;
  }
  return plain;
}

bool IsScriptSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == ',' || c == ';';
}

// The next word, quoted name or parenthesis of a linker script; empty at the end.
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

// A comment that isn't one for the compiler must not hide a directive, so the lines count both with
// and without what looks like comments.
std::vector<std::string> FindIncludes(std::string_view text) {
  Names names;
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  AddNames(text, names);
  const bool isPlain = text.find("/*") == text.npos && text.find("\\\n") == text.npos &&
                       text.find("\\\r\n") == text.npos;
  if (!isPlain) AddNames(WithoutComments(JoinLines(text)), names);
  return names;
}

std::vector<std::string> FindScriptInputs(std::string_view text) {
  Names names;
  const std::string plain = WithoutComments(text);
  std::string_view rest = plain;
  int depth = 0;  // parentheses inside INPUT or GROUP
  std::string_view before;
  for (std::string_view token; !(token = TakeScriptToken(rest)).empty(); before = token) {
    if (token == "(") {
      if (depth > 0 || before == "INPUT" || before == "GROUP") ++depth;
    } else if (token == ")") {
      if (depth > 0) --depth;
    } else if (before == "INCLUDE" || (depth > 0 && token != "AS_NEEDED")) {
      AddOnce(names, token);
    }
  }
  return names;
}

}  // namespace tarn
