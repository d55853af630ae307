#pragma once

#include <string>
#include <string_view>

namespace tarn::host {

enum class AssemblerStyle : char {
  Plain,
  Comment,
  BlockComment,
  Label,
  Directive,
  Mnemonic,
  Register,
  Number,
  String,
  Preprocessor,
};

// Returns the style of each byte of an assembler source. `text` must begin at the start of a line;
// `isInComment` is true if that is inside a block comment, the only context needed. Recognises the
// syntax of the GNU assembler and of assemblers for AVR and 8051; everything else is plain.
// Hand-written scanner, one pass, linear time.
std::string StyleAssembler(std::string_view text, bool isInComment);

}  // namespace tarn::host
