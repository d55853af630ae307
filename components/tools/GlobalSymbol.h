#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarn::tools {

// A function, variable or type at file level.
struct GlobalSymbol {
  // The values are the icon numbers in lists of globals.
  enum class Kind { Function = 0, Variable = 1, Type = 2 };

  Kind kind = Kind::Function;
  std::string name;
  std::string definition;  // as in source, such as "static uint8_t uart_put(char c)"
  std::string file;        // absolute
  int line = 0;
  std::optional<std::uint64_t> address;  // of a function or variable that has a known one
};

// Result of reading a program's symbols.
struct GlobalSymbols {
  std::vector<GlobalSymbol> symbols;
  std::string problem;    // why symbols are missing; empty if none are
  bool isUnable = false;  // reading is not supported, so an empty list means nothing
};

}  // namespace tarn::tools
