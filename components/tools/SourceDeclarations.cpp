#include "components/tools/SourceDeclarations.h"

#include <array>
#include <optional>

#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// Longer statements are not definitions that anyone looks for, such as a table without braces.
constexpr std::size_t kMostTokens = 400;
constexpr std::size_t kMostConditions = 100;  // nested sections

// Keywords and macros that take arguments and come before or after what is declared.
constexpr std::array<std::string_view, 8> kAttributes = {
    "__at", "__attribute__", "__interrupt", "__using", "__banked", "__trap", "_Alignas", "sizeof"};

bool IsWordStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsWordPart(char c) {
  return IsWordStart(c) || (c >= '0' && c <= '9');
}

struct Token {
  std::string_view text;
  int line = 0;
  bool isSpaced = false;  // blank or comment before it

  bool Is(std::string_view other) const { return text == other; }
  bool IsWord() const { return IsWordStart(text.front()); }
};

bool IsTag(const Token& token) {
  return token.Is("struct") || token.Is("union") || token.Is("enum");
}

bool IsAttribute(const Token& token) {
  for (const std::string_view each : kAttributes) {
    if (token.Is(each)) return true;
  }
  return false;
}

// Splits a source into tokens; a directive of the preprocessor is one token that starts with '#'.
class Scanner {
 public:
  explicit Scanner(std::string_view source) : rest_(source) {}

  std::optional<Token> Next() {
    bool isSpaced = false;
    while (SkipBlank()) isSpaced = true;
    if (rest_.empty()) return std::nullopt;
    const int line = line_;
    const std::size_t length = isLineStart_ && rest_.front() == '#' ? DirectiveLength() : Length();
    isLineStart_ = false;
    return Token{Take(length), line, isSpaced};
  }

 private:
  std::string_view Take(std::size_t length) {
    const std::string_view taken = rest_.substr(0, length);
    for (const char c : taken) line_ += c == '\n' ? 1 : 0;
    rest_.remove_prefix(taken.size());
    return taken;
  }

  // Skips one blank or comment; returns false if there is none.
  bool SkipBlank() {
    if (rest_.empty()) return false;
    if (rest_.front() == '\n') {
      isLineStart_ = true;
      Take(1);
    } else if (IsSpace(rest_.front()) || rest_.front() == '\\') {
      Take(1);
    } else if (rest_.starts_with("//")) {
      Take(rest_.find('\n'));
    } else if (rest_.starts_with("/*")) {
      const std::size_t end = rest_.find("*/", 2);
      Take(end == std::string_view::npos ? end : end + 2);
    } else {
      return false;
    }
    return true;
  }

  // A directive ends with the first line end that no backslash precedes.
  std::size_t DirectiveLength() const {
    for (std::size_t end = rest_.find('\n'); end != std::string_view::npos;
         end = rest_.find('\n', end + 1)) {
      const std::size_t last = rest_[end - 1] == '\r' ? end - 2 : end - 1;
      if (rest_[last] != '\\') return end;
    }
    return rest_.size();
  }

  std::size_t Length() const {
    const char first = rest_.front();
    std::size_t end = 1;
    if (first == '"' || first == '\'') {
      while (end < rest_.size() && rest_[end] != first && rest_[end] != '\n') {
        end += rest_[end] == '\\' ? 2 : 1;
      }
      return end < rest_.size() && rest_[end] == '\n' ? end : end + 1;
    }
    if (!IsWordPart(first)) return 1;
    while (end < rest_.size() && IsWordPart(rest_[end])) ++end;
    return end;
  }

  std::string_view rest_;
  int line_ = 1;
  bool isLineStart_ = true;
};

class Finder {
 public:
  std::vector<SourceDeclaration> Find(std::string_view source) {
    Scanner scanner(source);
    while (const auto token = scanner.Next()) {
      if (token->text.front() == '#') {
        Condition(Trim(token->text.substr(1)));
      } else {
        Add(*token);
      }
    }
    return std::move(found_);
  }

 private:
  struct State {
    std::vector<Token> statement;
    int parentheses = 0;
    int braces = 0;
    bool isFunction = false;  // the braces are the body of a function
    bool isValue = false;     // after "=", up to the next comma
  };

  // Each branch of a conditional section starts in the state before the section.
  void Condition(std::string_view directive) {
    if (directive.starts_with("if")) {
      if (before_.size() < kMostConditions) before_.push_back(state_);
      ++depth_;
    } else if (depth_ > 0 && directive.starts_with("el") && depth_ == before_.size()) {
      state_ = before_.back();
    } else if (depth_ > 0 && directive.starts_with("endif")) {
      if (depth_ == before_.size()) before_.pop_back();
      --depth_;
    }
  }

  void Add(const Token& token) {
    if (token.Is("{") && state_.parentheses == 0) {
      if (state_.braces++ == 0) Open();
    } else if (token.Is("}") && state_.parentheses == 0) {
      if (state_.braces > 0 && --state_.braces == 0 && state_.isFunction) End();
    } else if (state_.braces > 0) {
      return;
    } else if (token.Is(";")) {
      Declare();
    } else {
      Keep(token);
    }
  }

  void Keep(const Token& token) {
    if (token.Is("(")) ++state_.parentheses;
    if (token.Is(")") && state_.parentheses > 0) --state_.parentheses;
    if (state_.parentheses == 0 && token.Is("=")) state_.isValue = true;
    if (state_.parentheses == 0 && token.Is(",")) state_.isValue = false;
    if (!state_.isValue && state_.statement.size() < kMostTokens) state_.statement.push_back(token);
  }

  void End() { state_ = State(); }

  void Open() {
    const std::vector<Token>& words = state_.statement;
    state_.isFunction = false;
    if (state_.isValue || words.empty()) return;
    const std::size_t last = words.size() - 1;
    const bool isTagged = last > 0 && words[last].IsWord() && IsTag(words[last - 1]);
    if (isTagged) {
      const std::string name(words[last].text);
      found_.push_back({GlobalSymbol::Kind::Type, name,
                        std::string(words[last - 1].text) + ' ' + name, words[last].line});
    }
    if (isTagged || IsTag(words[last])) {
      state_.statement.push_back({"{...}", words[last].line, true});
    } else {
      for (std::size_t i = 0; i + 1 < words.size() && !state_.isFunction; ++i) {
        if (!words[i].IsWord() || !words[i + 1].Is("(") || IsAttribute(words[i])) continue;
        found_.push_back({GlobalSymbol::Kind::Function, std::string(words[i].text),
                          TextOf(0, words.size()), words[i].line});
        state_.isFunction = true;
      }
    }
  }

  // Adds the variables of a declaration.
  void Declare() {
    const std::vector<Token>& words = state_.statement;
    const bool isWanted = !words.empty() && !words[0].Is("typedef") && !HasExtern(words);
    std::size_t types = 0;  // number of words before the first declarator
    for (std::size_t start = 0; isWanted && start < words.size();) {
      const Declarator each = ReadDeclarator(start);
      if (start == 0) {
        types = each.name;
        while (types > 0 && (words[types - 1].Is("*") || words[types - 1].Is("("))) --types;
      }
      if (each.isVariable && types > 0) {
        std::string text = start == 0 ? std::string() : TextOf(0, types) + ' ';
        text += TextOf(start, each.end);
        const Token& name = words[each.name];
        found_.push_back(
            {GlobalSymbol::Kind::Variable, std::string(name.text), std::move(text), name.line});
      }
      start = each.end + 1;
    }
    End();
  }

  struct Declarator {
    std::size_t name = 0;  // position of the name
    std::size_t end = 0;   // position of the comma after it, or of the end
    bool isVariable = false;
  };

  // The last word outside of parentheses and brackets is the name, except in "(*name)". A name
  // with parentheses after it is that of a function.
  Declarator ReadDeclarator(std::size_t start) const {
    const std::vector<Token>& words = state_.statement;
    Declarator read;
    bool isNamed = false;
    for (read.end = start; read.end < words.size() && !words[read.end].Is(","); ++read.end) {
      const std::size_t i = read.end;
      if (words[i].Is("(") || words[i].Is("[")) {
        read.end = Close(words, i);
        if (words[i].Is("[") || isNamed || (i > start && IsAttribute(words[i - 1]))) continue;
        isNamed = true;
        read.isVariable = i + 1 < words.size() && words[i + 1].Is("*");
        if (read.isVariable) read.name = LastWord(words, i, read.end);
      } else if (words[i].IsWord() && !isNamed && !IsAttribute(words[i]) &&
                 !(i > 0 && IsTag(words[i - 1]))) {
        read.name = i;
        read.isVariable = true;
      }
    }
    return read;
  }

  static bool HasExtern(const std::vector<Token>& words) {
    for (const Token& each : words) {
      if (each.Is("extern")) return true;
    }
    return false;
  }

  // Returns the position of the bracket that closes the one at `open`, or the last position.
  static std::size_t Close(const std::vector<Token>& words, std::size_t open) {
    int depth = 0;
    for (std::size_t i = open; i < words.size(); ++i) {
      if (words[i].Is("(") || words[i].Is("[")) ++depth;
      if ((words[i].Is(")") || words[i].Is("]")) && --depth == 0) return i;
    }
    return words.size() - 1;
  }

  // Returns the position of the last word before a bracket.
  static std::size_t LastWord(const std::vector<Token>& words, std::size_t from, std::size_t to) {
    std::size_t last = from;
    for (std::size_t i = from; i < to && !words[i].Is("["); ++i) {
      if (words[i].IsWord()) last = i;
    }
    return last;
  }

  std::string TextOf(std::size_t from, std::size_t to) const {
    std::string text;
    for (std::size_t i = from; i < to; ++i) {
      const Token& each = state_.statement[i];
      if (each.isSpaced && !text.empty()) text += ' ';
      text += each.text;
    }
    return text;
  }

  State state_;
  std::vector<State> before_;
  std::size_t depth_ = 0;  // of conditional sections
  std::vector<SourceDeclaration> found_;
};

}  // namespace

std::vector<SourceDeclaration> FindDeclarations(std::string_view source) {
  return Finder().Find(source);
}

}  // namespace tarn::tools
