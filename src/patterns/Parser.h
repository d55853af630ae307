#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Splits a text into tokens at a set of separator bytes: the lists in attributes, the lines of tool
// output. Runs of separators count as one and give no empty tokens.
//
// A token that begins with ' or " is quoted. Up to the last such quote in the token, what stands
// between the two is the token and the rest of it is dropped. Without a second quote in the token
// the quoted text goes on behind the separator: the token, one blank in place of the separator, and
// all up to the next such quote, or to the end of the text; quotes directly behind the separator
// are passed over. With nothing there the blank is left out.
//
// A zero byte ends the text.
class CParser {
 public:
  CParser(std::string_view text, std::string_view separatorBytes);

  int GetCount() const { return count; }
  // A copy of the token. At GetCount stands "|" as an end mark; any index beyond gives an empty
  // text.
  std::string GetToken(int index) const;
  // The same, borrowed from the parser.
  std::string_view TokenView(int index) const;

 private:
  std::vector<std::string> tokens;
  int count = 0;
  std::string separators;
};

}  // namespace tarn
