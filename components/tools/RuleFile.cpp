#include "components/tools/RuleFile.h"

#include <algorithm>
#include <unordered_set>

namespace tarn::tools {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// Characters that no compiler writes into a rule, such as the zeros of a block that never reached
// the disk.
bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < ' ' && c != '\t' && c != '\n' && c != '\r') || byte == 127;
}

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
    if (std::any_of(text.begin(), text.end(), IsControl)) return "holds binary data";
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

  // A colon ends the targets when a blank or the end of the line follows, and it is not the one
  // behind a drive letter; behind the first, colons belong to names.
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

  // Backslashes mean something only in front of a blank, a hash or a line end: there a pair stands
  // for one, and an odd one protects what follows. Elsewhere they are part of the name.
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
