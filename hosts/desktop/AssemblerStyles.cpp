#include "hosts/desktop/AssemblerStyles.h"

#include <algorithm>
#include <iterator>

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Directives without a leading dot, as used by 8051 assemblers.
constexpr std::string_view kDirectives[] = {"bseg",   "cseg",    "db",    "ds",    "dseg",  "dw",
                                            "else",   "end",     "endif", "endm",  "extrn", "if",
                                            "ifdef",  "include", "iseg",  "macro", "name",  "org",
                                            "public", "rseg",    "using", "xseg"};
// Directives that follow the name that they define.
constexpr std::string_view kDefinitions[] = {"=",       "bit", "code", "data",  "db",
                                             "ds",      "dw",  "equ",  "idata", "macro",
                                             "segment", "set", "xdata"};
constexpr std::string_view kPreprocessor[] = {"define",  "elif",   "else",  "endif",
                                              "error",   "if",     "ifdef", "ifndef",
                                              "include", "pragma", "undef"};
// Registers in addition to r0 to r31.
constexpr std::string_view kRegisters[] = {"a",  "ab",  "acc", "b",   "c",   "dph",  "dpl", "dptr",
                                           "pc", "psw", "sp",  "sph", "spl", "sreg", "x",   "xh",
                                           "xl", "y",   "yh",  "yl",  "z",   "zh",   "zl"};

template <std::size_t Size>
bool IsAmong(const std::string_view (&names)[Size], std::string_view word) {
  return std::any_of(std::begin(names), std::end(names),
                     [&](std::string_view name) { return EqualNoCase(name, word); });
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.' || c == '?' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsInWord(char c) {
  return IsLetter(c) || IsDigit(c) || c == '$';
}

bool IsRegister(std::string_view word) {
  const bool isNumbered = (word.size() == 2 || word.size() == 3) &&
                          (word[0] == 'r' || word[0] == 'R') &&
                          std::all_of(word.begin() + 1, word.end(), IsDigit);
  return isNumbered || IsAmong(kRegisters, word);
}

class Styler {
 public:
  explicit Styler(std::string_view source) : text_(source) { styles_.reserve(text_.size()); }

  std::string Run(bool isInComment) {
    if (isInComment) TakeBlockComment();
    while (styles_.size() < text_.size()) TakeNext();
    return std::move(styles_);
  }

 private:
  std::string_view Rest() const { return text_.substr(styles_.size()); }
  void Take(std::size_t count, AssemblerStyle style) {
    styles_.append(std::min(count, text_.size() - styles_.size()), static_cast<char>(style));
  }
  // Returns the longest run of bytes from `from` on that satisfy `fits`.
  template <typename Fits>
  std::string_view Span(std::size_t from, Fits fits) const {
    const std::string_view rest = Rest().substr(std::min(from, Rest().size()));
    const auto end = std::find_if_not(rest.begin(), rest.end(), fits);
    return rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
  }
  std::size_t LengthOfLine() const { return std::min(Rest().find_first_of("\r\n"), Rest().size()); }

  void TakeNext() {
    const std::string_view rest = Rest();
    const char c = rest.front();
    if (c == '\n') {
      hasOperation_ = false;
      lacksQuote_ = false;
      Take(1, AssemblerStyle::Plain);
    } else if (c == ';' || rest.starts_with("//")) {
      Take(LengthOfLine(), AssemblerStyle::Comment);
    } else if (rest.starts_with("/*")) {
      Take(2, AssemblerStyle::BlockComment);
      TakeBlockComment();
    } else if (c == '"' || c == '\'') {
      TakeString(c);
    } else if ((c == '#' || c == '$') && !hasOperation_) {
      TakeControl(c);
    } else if (IsDigit(c) || (c == '$' && !Span(1, IsInWord).empty())) {
      TakeNumber();
    } else if (IsLetter(c)) {
      TakeWord();
    } else {
      Take(1, AssemblerStyle::Plain);
    }
  }

  void TakeBlockComment() {
    const std::size_t end = Rest().find("*/");
    Take(end == Rest().npos ? end : end + 2, AssemblerStyle::BlockComment);
  }

  // The closing quote of a character constant is optional. After one line end without a closing
  // quote, the rest of the line is not searched again, which keeps the time linear.
  void TakeString(char quote) {
    const std::string_view rest = Rest();
    const auto isInLine = [&](std::size_t at) {
      return at < rest.size() && rest[at] != '\r' && rest[at] != '\n';
    };
    const bool isCharacter = quote == '\'';
    std::size_t end = 1;
    while (!(isCharacter && lacksQuote_) && isInLine(end) && rest[end] != quote) {
      end += rest[end] == '\\' && isInLine(end + 1) ? 2 : 1;
    }
    const bool isClosed = isInLine(end) && rest[end] == quote && !(isCharacter && lacksQuote_);
    if (isCharacter && !isClosed) {
      lacksQuote_ = true;
      end = rest.substr(1).starts_with('\\') ? 3 : 2;
      while (!isInLine(end - 1)) --end;
    }
    Take(isClosed ? end + 1 : end, AssemblerStyle::String);
  }

  // A line for the preprocessor or an assembler control, up to a comment. If the sign is followed
  // by anything else, the line is a comment.
  void TakeControl(char sign) {
    const std::string_view blanks = Span(1, [](char c) { return c == ' ' || c == '\t'; });
    const bool isControl = sign == '$' || IsAmong(kPreprocessor, Span(1 + blanks.size(), IsInWord));
    std::size_t length = LengthOfLine();
    if (isControl) {
      const std::string_view line = Rest().substr(0, length);
      length = std::min({line.find(';'), line.find("//"), line.find("/*"), length});
    }
    Take(length, isControl ? AssemblerStyle::Preprocessor : AssemblerStyle::Comment);
    hasOperation_ = true;
  }

  void TakeNumber() {
    const std::size_t length = 1 + Span(1, IsInWord).size();
    const bool isLabel = !hasOperation_ && Rest().substr(length).starts_with(':');
    Take(length, isLabel ? AssemblerStyle::Label : AssemblerStyle::Number);
  }

  void TakeWord() {
    const std::string_view word = Span(0, IsInWord);
    if (!hasOperation_) {
      Take(word.size(), StyleOfFirst(word));
      return;
    }
    const bool isDefinition = isNamed_ && IsAmong(kDefinitions, word);
    isNamed_ = false;
    Take(word.size(), isDefinition       ? AssemblerStyle::Directive
                      : IsRegister(word) ? AssemblerStyle::Register
                                         : AssemblerStyle::Plain);
  }

  // A label doesn't count as the operation of the line.
  AssemblerStyle StyleOfFirst(std::string_view word) {
    const std::string_view rest = Rest().substr(word.size());
    if (rest.starts_with(':')) return AssemblerStyle::Label;
    hasOperation_ = true;
    isNamed_ = false;
    if (word.front() == '.' || IsAmong(kDirectives, word)) return AssemblerStyle::Directive;
    const std::string_view blanks = Span(word.size(), [](char c) { return c == ' ' || c == '\t'; });
    const auto isWord = [](char c) { return IsInWord(c) || c == '='; };
    isNamed_ = IsAmong(kDefinitions, Span(word.size() + blanks.size(), isWord));
    return isNamed_ ? AssemblerStyle::Label : AssemblerStyle::Mnemonic;
  }

  std::string_view text_;
  std::string styles_;
  bool hasOperation_ = false;  // seen in this line; operands follow
  bool lacksQuote_ = false;    // no more single-quoted strings in this line
  bool isNamed_ = false;       // the operation follows the name that it defines
};

}  // namespace

std::string StyleAssembler(std::string_view text, bool isInComment) {
  return Styler(text).Run(isInComment);
}

}  // namespace tarn::host
