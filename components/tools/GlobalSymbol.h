#pragma once

#include <string>
#include <vector>

namespace tarn::tools {

struct GlobalSymbol {
  // The numbers are those of the pictures in lists of globals.
  enum class Kind { Function = 0, Variable = 1, Type = 2 };

  Kind kind = Kind::Function;
  std::string name;
  std::string definition;  // as in source, such as "static uint8_t uart_put(char c)"
  std::string file;        // absolute
  int line = 0;
};

struct GlobalSymbols {
  std::vector<GlobalSymbol> symbols;
  std::string problem;    // why symbols are missing; empty when none are
  bool isUnable = false;  // nobody has looked, so having found none means nothing
};

}  // namespace tarn::tools
