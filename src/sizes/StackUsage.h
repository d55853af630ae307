#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarn::sizes {

// Stack of one function, without what it calls.
struct FunctionStack {
  std::string function;
  std::string file;  // as the compiler was given it
  int line = 0;
  std::uint64_t bytes = 0;
  std::string kind;  // "static", "dynamic" (grows at run time), "dynamic,bounded"
};

// Reads the file that gcc or clang writes for -fstack-usage: lines
// "file:line:column:function<tab>bytes<tab>kind". Lines of any other form are skipped. Linear.
std::vector<FunctionStack> ReadStackUsage(std::string_view text);

}  // namespace tarn::sizes
