#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/tools/GlobalSymbol.h"

namespace tarn::tools {

// A definition at file level in a C source.
struct SourceDeclaration {
  GlobalSymbol::Kind kind = GlobalSymbol::Kind::Function;
  std::string name;  // of a type: its tag
  std::string text;  // as in the source, in one line, without body and initializers
  int line = 0;      // of the name, from 1
};

// Finds the definitions of functions, variables, structures, unions and enumerations at file level,
// in order. Expands no macros, so definitions that macros generate are missing; reads all branches
// of conditional sections, each as if it followed what precedes the section. Omits typedefs,
// prototypes and what is declared `extern`. Returns what it recognizes in text that isn't C.
// Linear.
std::vector<SourceDeclaration> FindDeclarations(std::string_view source);

}  // namespace tarn::tools
