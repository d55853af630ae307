#include "patterns/Parser.h"

#include <algorithm>

#include "patterns/ByteSet.h"

namespace tarn {
namespace {

// Splits a string into chunks. The set of separators may differ from chunk to chunk.
class Pieces {
 public:
  explicit Pieces(std::string_view text) : rest_(text) {}

  // Skips separators, returns all bytes up to the next separator and consumes that one. Returns an
  // empty string at the end.
  std::string_view Next(const ByteSet& ends) {
    const auto isEnd = [&](char c) { return ends.Has(c); };
    const auto first = std::find_if_not(rest_.begin(), rest_.end(), isEnd);
    const auto last = std::find_if(first, rest_.end(), isEnd);
    const std::string_view piece(first, last);
    rest_ = std::string_view(last == rest_.end() ? last : last + 1, rest_.end());
    return piece;
  }

 private:
  std::string_view rest_;
};

std::string Unquote(std::string_view token, Pieces& pieces) {
  const char quote = token.front();
  if (const std::size_t last = token.rfind(quote); last != 0) {
    return std::string(token.substr(1, last - 1));
  }
  std::string result(token.substr(1));
  if (const std::string_view piece = pieces.Next(ByteSet({&quote, 1})); !piece.empty()) {
    result.append(1, ' ').append(piece);
  }
  return result;
}

}  // namespace

CParser::CParser(std::string_view text, std::string_view separatorBytes)
    : separators_(separatorBytes) {
  const ByteSet ends{separators_};
  Pieces pieces(text.substr(0, text.find('\0')));
  for (auto token = pieces.Next(ends); !token.empty(); token = pieces.Next(ends)) {
    const bool isQuoted = token.front() == '"' || token.front() == '\'';
    tokens_.push_back(isQuoted ? Unquote(token, pieces) : std::string(token));
    ++count_;
  }
  tokens_.push_back("|");
}

std::string CParser::GetToken(int index) const {
  return std::string(TokenView(index));
}

std::string_view CParser::TokenView(int index) const {
  if (index < 0 || index > count_) return {};
  return tokens_[static_cast<std::size_t>(index)];
}

}  // namespace tarn
