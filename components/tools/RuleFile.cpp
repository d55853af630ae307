#include "components/tools/RuleFile.h"

#include <algorithm>
#include <unordered_set>

namespace tarn::tools {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// Returns true for characters that no compiler writes to a dependency file, such as the zeros of a
// block that never reached the disk.
bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < ' ' && c != '\t' && c != '\n' && c != '\r') || byte == 127;
}

// Scanner that reads the text once, character by character, without backtracking.
class RuleReader {
 public:
  explicit RuleReader(std::string_view ruleText) : text(ruleText) {}

  RuleFile Read() {
    while (at < text.size()) Step();
    EndWord();
    return {std::move(names), FindProblem()};
  }

 private:
  std::string FindProblem() const {
    if (text.empty()) return "is empty";
    if (std::any_of(text.begin(), text.end(), IsControl)) return "contains binary data";
    if (!hasRule) return "has no rule";
    const bool isCut = text.back() != '\n' || isContinued;
    return isCut ? "ends in the middle of a line" : std::string();
  }

  char Peek(std::size_t ahead) const { return at + ahead < text.size() ? text[at + ahead] : '\0'; }

  void Step() {
    const char c = text[at];
    isContinued = false;
    if (c == '\n') {
      EndWord();
      isBehindColon = false;
      ++at;
    } else if (IsBlank(c) || (c == '\r' && (Peek(1) == '\n' || at + 1 == text.size()))) {
      EndWord();
      ++at;
    } else if (c == '#') {
      SkipComment();
    } else if (IsRuleColon(c)) {
      word.clear();  // the last target
      isBehindColon = true;
      hasRule = true;
      ++at;
    } else {
      TakeCharacter(c);
    }
  }

  // Returns true for the colon that ends the targets: it is followed by a space or a line ending,
  // so it is not the one after a drive letter. After the first such colon, colons are part of
  // names.
  bool IsRuleColon(char c) const {
    if (c != ':' || isBehindColon) return false;
    const char next = Peek(1);
    return next == '\0' || next == '\n' || next == '\r' || IsBlank(next);
  }

  void SkipComment() {
    EndWord();
    const std::size_t end = text.find('\n', at);
    at = end == std::string_view::npos ? text.size() : end;
  }

  void TakeCharacter(char c) {
    if (c == '\\') {
      TakeBackslashes();
    } else {
      word += c;
      at += c == '$' && Peek(1) == '$' ? 2 : 1;
    }
  }

  // Backslashes are special only before a space, a hash or a line ending: there each pair
  // represents one backslash, and an odd one escapes the character that follows. Elsewhere they are
  // part of the name.
  void TakeBackslashes() {
    std::size_t count = 0;
    while (Peek(count) == '\\' && at + count < text.size()) ++count;
    const char next = Peek(count);
    const std::size_t lineEnd = next == '\n' ? 1 : next == '\r' && Peek(count + 1) == '\n' ? 2 : 0;
    at += count;
    if (lineEnd > 0 && count % 2 == 1) {
      word.append(count / 2, '\\');
      EndWord();
      at += lineEnd;
      isContinued = true;
    } else if (IsBlank(next) || next == '#') {
      word.append(count / 2, '\\');
      if (count % 2 == 1) word += text[at++];
    } else {
      word.append(count, '\\');
    }
  }

  void EndWord() {
    if (isBehindColon && !word.empty() && seen.insert(word).second) names.push_back(word);
    word.clear();
  }

  std::string_view text;
  std::size_t at = 0;
  bool isBehindColon = false;
  bool hasRule = false;
  bool isContinued = false;  // the last line ended in a backslash
  std::string word;
  std::vector<std::string> names;
  std::unordered_set<std::string> seen;
};

}  // namespace

RuleFile ReadRuleFile(std::string_view text) {
  return RuleReader(text).Read();
}

}  // namespace tarn::tools
