#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Splits a string into tokens at a set of separator bytes. Used for lists in attributes and for
// lines of tool output. Consecutive separators count as one and don't produce empty tokens.
//
// A token that begins with ' or " is quoted. If the token has a second such quote, the part between
// the first and the last one is the token and the rest is dropped. Otherwise the quoted string
// continues after the separator: the token is joined with one space in place of the separator, and
// with everything up to the next such quote or the end of the input; quotes directly after the
// separator are skipped. If nothing follows, no space is added.
//
// A zero byte ends the input.
class CParser {
 public:
  CParser(std::string_view text, std::string_view separatorBytes);

  int GetCount() const { return count_; }
  // Returns a copy of the token. The token at GetCount() is the end marker "|"; an index beyond it
  // yields an empty string.
  std::string GetToken(int index) const;
  // Like `GetToken()`, but returns a view that is valid as long as the parser.
  std::string_view TokenView(int index) const;

 private:
  std::vector<std::string> tokens_;
  int count_ = 0;
  std::string separators_;
};

}  // namespace tarn
