#include "patterns/PatternError.h"

#include <array>

namespace tarn {
namespace {

// Indexed by error number, starting at 1. Errors 6 and 23 don't occur.
constexpr std::array kTexts = {
    "NULL argument to regexec",
    "corrupted regexp",
    "regexp corruption",
    "corrupted pointers",
    "internal error: bad call of regrepeat",
    "corrupted opcode",
    "NULL parm to regsub",
    "damaged regexp fed to regsub",
    "damaged match string",
    "NULL argument to regcomp",
    "regexp too big",
    "too many ()",
    "unterminated ()",
    "unmatched ()",
    "internal error: junk on end",
    "*+ operand could be empty",
    "nested *?+",
    "invalid [] range",
    "unmatched []",
    "internal error: \\0|) unexpected",
    "?+* follows nothing",
    "trailing \\",
    "internal error: strcspn 0",
    "NULL regexp",
};

}  // namespace

const char* PatternErrorText(int code) {
  if (code < 1 || code > static_cast<int>(kTexts.size())) return "Unknown error";
  return kTexts[static_cast<std::size_t>(code - 1)];
}

}  // namespace tarn
