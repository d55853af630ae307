#include "components/tools/DepFile.h"

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
  explicit RuleReader(std::string_view ruleText) : text_(ruleText) {}

  DepFile Read() {
    while (at_ < text_.size()) Step();
    EndWord();
    return {std::move(names_), FindProblem()};
  }

 private:
  std::string FindProblem() const {
    if (text_.empty()) return "is empty";
    if (std::any_of(text_.begin(), text_.end(), IsControl)) return "contains binary data";
    if (!hasRule_) return "has no rule";
    const bool isCut = text_.back() != '\n' || isContinued_;
    return isCut ? "ends in the middle of a line" : std::string();
  }

  char Peek(std::size_t ahead) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
  }

  void Step() {
    const char c = text_[at_];
    isContinued_ = false;
    if (c == '\n') {
      EndWord();
      isAfterColon_ = false;
      ++at_;
    } else if (IsBlank(c) || (c == '\r' && (Peek(1) == '\n' || at_ + 1 == text_.size()))) {
      EndWord();
      ++at_;
    } else if (c == '#') {
      SkipComment();
    } else if (IsRuleColon(c)) {
      word_.clear();  // the last target
      isAfterColon_ = true;
      hasRule_ = true;
      ++at_;
    } else {
      TakeCharacter(c);
    }
  }

  // Returns true for the colon that ends the targets: it is followed by a space or a line ending,
  // so it is not the one after a drive letter. After the first such colon, colons are part of
  // names.
  bool IsRuleColon(char c) const {
    if (c != ':' || isAfterColon_) return false;
    const char next = Peek(1);
    return next == '\0' || next == '\n' || next == '\r' || IsBlank(next);
  }

  void SkipComment() {
    EndWord();
    const std::size_t end = text_.find('\n', at_);
    at_ = end == std::string_view::npos ? text_.size() : end;
  }

  void TakeCharacter(char c) {
    if (c == '\\') {
      TakeBackslashes();
    } else {
      word_ += c;
      at_ += c == '$' && Peek(1) == '$' ? 2 : 1;
    }
  }

  // Backslashes are special only before a space, a hash or a line ending: there each pair
  // represents one backslash, and an odd one escapes the character that follows. Elsewhere they are
  // part of the name.
  void TakeBackslashes() {
    std::size_t count = 0;
    while (Peek(count) == '\\' && at_ + count < text_.size()) ++count;
    const char next = Peek(count);
    const std::size_t lineEnd = next == '\n' ? 1 : next == '\r' && Peek(count + 1) == '\n' ? 2 : 0;
    at_ += count;
    if (lineEnd > 0 && count % 2 == 1) {
      word_.append(count / 2, '\\');
      EndWord();
      at_ += lineEnd;
      isContinued_ = true;
    } else if (IsBlank(next) || next == '#') {
      word_.append(count / 2, '\\');
      if (count % 2 == 1) word_ += text_[at_++];
    } else {
      word_.append(count, '\\');
    }
  }

  void EndWord() {
    if (isAfterColon_ && !word_.empty() && seen_.insert(word_).second) names_.push_back(word_);
    word_.clear();
  }

  std::string_view text_;
  std::size_t at_ = 0;
  bool isAfterColon_ = false;
  bool hasRule_ = false;
  bool isContinued_ = false;  // the last line ended in a backslash
  std::string word_;
  std::vector<std::string> names_;
  std::unordered_set<std::string> seen_;
};

}  // namespace

DepFile ReadDepFile(std::string_view text) {
  return RuleReader(text).Read();
}

}  // namespace tarn::tools
