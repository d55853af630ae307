#include "components/tools/RuleFile.h"

#include <unordered_set>

namespace tarn::tools {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

class RuleReader {
 public:
  explicit RuleReader(std::string_view ruleText) : text(ruleText) {}

  std::vector<std::string> Read() {
    while (at < text.size()) Step();
    EndWord();
    return std::move(names);
  }

 private:
  char Peek(std::size_t ahead) const { return at + ahead < text.size() ? text[at + ahead] : '\0'; }

  void Step() {
    const char c = text[at];
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
  std::string word;
  std::vector<std::string> names;
  std::unordered_set<std::string> seen;
};

}  // namespace

std::vector<std::string> ReadRuleFile(std::string_view text) {
  return RuleReader(text).Read();
}

}  // namespace tarn::tools
