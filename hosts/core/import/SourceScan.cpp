#include "hosts/core/import/SourceScan.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Limits for input that nobody has written by hand.
constexpr std::size_t kMostConditions = 64;
constexpr std::size_t kLongestHead = 10000;  // of a function, with the declarations after it
constexpr std::size_t kMostConditionText = std::size_t{16} << 20;  // of all functions

bool IsWordChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool HasWord(std::string_view text, std::string_view word) {
  for (std::size_t at = text.find(word); at != text.npos; at = text.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    const bool startsWord = at == 0 || !IsWordChar(text[at - 1]);
    if (startsWord && (end == text.size() || !IsWordChar(text[end]))) return true;
  }
  return false;
}

// Position of the bracket that closes the one at `open`, or npos.
std::size_t FindClosing(std::string_view text, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < text.size(); ++i) {
    if (text[i] == '(') ++depth;
    if (text[i] == ')' && --depth == 0) return i;
  }
  return text.npos;
}

// Drops " = value" after the names of parameters.
std::string WithoutDefaults(std::string_view parameters) {
  std::string kept;
  int depth = 0;
  bool isValue = false;
  char quote = 0;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const char c = parameters[i];
    if (quote != 0) {
      if (c == '\\') ++i;
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else {
      if (c == '(' || c == '{') ++depth;
      if (c == ')' || c == '}') --depth;
      if (c == '=' && depth == 1) isValue = true;
      if ((c == ',' && depth == 1) || depth == 0) isValue = false;
    }
    if (!isValue) kept += c;
  }
  return kept;
}

class Scanner {
 public:
  explicit Scanner(const std::string& source) : text_(source) {}

  ScannedSource Run();

 private:
  bool SkipComment();
  bool SkipLiteral();
  void TakeDirective();
  void TakeChar(char c);
  void EndStatement();
  void TakeHeader();
  bool IsOldStyle() const;

  const std::string& text_;
  std::size_t at_ = 0;
  int depth_ = 0;
  bool isLineStart_ = true;
  std::string statement_;  // since the last one at the top level, without comments
  std::size_t start_ = 0;  // of the statement
  struct Condition {
    std::string text;
    std::size_t start;
    std::size_t group;  // distinguishes nested conditions from branches of one
  };
  std::vector<Condition> conditions_;
  std::size_t level_ = 0;
  std::size_t conditionText_ = 0;  // length of the conditions of all functions so far
  ScannedSource found_;
};

bool Scanner::SkipComment() {
  if (text_.compare(at_, 2, "//") == 0) {
    at_ = std::min(text_.find('\n', at_), text_.size());
  } else if (text_.compare(at_, 2, "/*") == 0) {
    const std::size_t end = text_.find("*/", at_ + 2);
    at_ = end == std::string::npos ? text_.size() : end + 2;
    if (!statement_.empty()) statement_ += ' ';
  } else {
    return false;
  }
  return true;
}

bool Scanner::SkipLiteral() {
  const char quote = text_[at_];
  if (quote != '"' && quote != '\'') return false;
  const bool isSeparator = quote == '\'' && at_ > 0 && IsWordChar(text_[at_ - 1]) &&
                           std::isdigit(static_cast<unsigned char>(text_[at_ - 1])) != 0;
  if (isSeparator) return false;
  const std::size_t from = at_;
  if (quote == '"' && at_ > 0 && text_[at_ - 1] == 'R') {
    const std::size_t open = text_.find('(', at_);
    const std::string end = ")" + text_.substr(at_ + 1, open - at_ - 1) + "\"";
    const std::size_t close = open == std::string::npos ? open : text_.find(end, open);
    at_ = close == std::string::npos ? text_.size() : close + end.size();
  } else {
    for (++at_; at_ < text_.size() && text_[at_] != quote && text_[at_] != '\n'; ++at_) {
      if (text_[at_] == '\\') ++at_;
    }
    at_ = std::min(at_ + 1, text_.size());
  }
  if (depth_ == 0) {
    if (statement_.empty()) start_ = from;
    statement_ += text_.substr(from, at_ - from);
  }
  return true;
}

void Scanner::TakeDirective() {
  const std::size_t start = at_;
  std::string line;
  while (at_ < text_.size() && text_[at_] != '\n') {
    if (text_[at_] == '\\' && at_ + 1 < text_.size() &&
        (text_[at_ + 1] == '\n' || text_.compare(at_ + 1, 2, "\r\n") == 0)) {
      at_ = text_.find('\n', at_) + 1;
      line += ' ';
    } else if (line.empty() || !SkipComment()) {
      line += text_[at_++];
    }
  }
  line = Trim(line);
  std::string word(Trim(std::string_view(line).substr(1)));
  const std::size_t end = static_cast<std::size_t>(
      std::find_if_not(word.begin(), word.end(), IsWordChar) - word.begin());
  const std::string rest(Trim(std::string_view(word).substr(end)));
  word.resize(end);
  const bool isKept = conditions_.size() < kMostConditions;
  if (word == "if" || word == "ifdef" || word == "ifndef") {
    ++level_;
    if (isKept) conditions_.push_back({line, start, level_});
  } else if ((word == "else" || word == "elif") && level_ > 0) {
    if (isKept) conditions_.push_back({line, start, level_});
  } else if (word == "endif" && level_ > 0) {
    while (!conditions_.empty() && conditions_.back().group == level_) conditions_.pop_back();
    --level_;
  } else if (word == "include" && rest.size() > 2 && (rest[0] == '<' || rest[0] == '"')) {
    const std::size_t close = rest.find(rest[0] == '<' ? '>' : '"', 1);
    if (close != std::string::npos) found_.includes.push_back(rest.substr(1, close - 1));
  }
}

void Scanner::EndStatement() {
  statement_.clear();
}

// Returns true if the statement is the head of a function whose parameters are declared after it.
bool Scanner::IsOldStyle() const {
  const std::size_t open = statement_.find('(');
  if (open == std::string::npos) return false;
  const std::size_t close = FindClosing(statement_, open);
  if (close == std::string::npos || close == open + 1) return false;
  const std::string names = statement_.substr(open + 1, close - open - 1);
  for (const std::string_view each : Split(names, ',')) {
    const std::string_view name = Trim(each);
    if (name.empty() || !std::all_of(name.begin(), name.end(), IsWordChar)) return false;
  }
  const std::string_view rest = Trim(std::string_view(statement_).substr(close + 1));
  return !rest.empty() && IsWordChar(rest[0]) && !rest.starts_with("__");
}

// Examines the text before an opening brace at the top level.
void Scanner::TakeHeader() {
  const std::size_t open = statement_.find('(');
  if (open == std::string::npos || HasWord(statement_.substr(0, open), "template")) return;
  if (HasWord(statement_.substr(0, open), "operator") || statement_[0] == '=') return;
  if (statement_.substr(0, open).find('=') != std::string::npos) return;
  const std::size_t close = FindClosing(statement_, open);
  if (close == std::string::npos) return;
  const std::string before(Trim(statement_.substr(0, open)));
  std::size_t nameStart = before.size();
  while (nameStart > 0 && IsWordChar(before[nameStart - 1])) --nameStart;
  FoundFunction function;
  function.name = before.substr(nameStart);
  const std::string type(Trim(before.substr(0, nameStart)));
  if (function.name.empty() || type.ends_with(":")) return;
  function.start = start_;
  function.outermost = start_;
  for (const Condition& each : conditions_) conditionText_ += each.text.size();
  if (conditionText_ > kMostConditionText) return;
  for (const Condition& each : conditions_) function.conditions.push_back(each.text);
  if (!conditions_.empty()) function.outermost = conditions_.front().start;
  if (!type.empty() && !IsOldStyle()) {
    const std::string tail(Trim(std::string_view(statement_).substr(close + 1)));
    function.prototype = before + WithoutDefaults(statement_.substr(open, close + 1 - open)) +
                         (tail.empty() ? "" : " " + tail);
  }
  found_.functions.push_back(std::move(function));
}

void Scanner::TakeChar(char c) {
  if (c == '{') {
    if (depth_++ == 0) TakeHeader();
  } else if (c == '}') {
    depth_ = std::max(depth_ - 1, 0);
    if (depth_ == 0) EndStatement();
  } else if (depth_ > 0) {
    return;
  } else if (c == ';') {
    if (statement_.size() > kLongestHead || !IsOldStyle()) return EndStatement();
    statement_ += c;
  } else if (IsSpace(c)) {
    if (!statement_.empty() && statement_.back() != ' ') statement_ += ' ';
  } else {
    if (statement_.empty()) start_ = at_;
    statement_ += c;
  }
}

ScannedSource Scanner::Run() {
  while (at_ < text_.size()) {
    const char c = text_[at_];
    if (c == '\n') isLineStart_ = true;
    if (SkipComment()) continue;
    if (c == '#' && isLineStart_) {
      TakeDirective();
      continue;
    }
    if (!IsSpace(c)) isLineStart_ = false;
    if (SkipLiteral()) continue;
    TakeChar(c);
    ++at_;
  }
  return std::move(found_);
}

}  // namespace

ScannedSource ScanSource(const std::string& text) {
  return Scanner(text).Run();
}

}  // namespace tarn::host
