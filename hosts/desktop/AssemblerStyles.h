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

// The style of each byte of an assembler source, which begins with a line. Knows what the GNU
// assembler's sources and those for AVR and 8051 have; what it doesn't know is plain. Of what goes
// before it needs to know whether that ends inside of a block comment. Linear in the length.
std::string StyleAssembler(std::string_view text, bool isInComment);

}  // namespace tarn::host
