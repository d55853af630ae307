#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "components/tools/DebugSymbols.h"

// Reads any linker output: no crash, no infinite loop, and each symbol has a name and a file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string program(reinterpret_cast<const char*>(data), size);
  for (const auto& symbol : tarn::tools::ReadDebugSymbols(program, "/p").symbols) {
    if (symbol.name.empty() || symbol.file.empty()) std::abort();
  }
  return 0;
}
