#include "hosts/core/SymbolName.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace tarn::host {

std::string ReadableSymbol(const std::string& name) {
  // The library's function recurses; the limit bounds its depth for a hostile name.
  constexpr std::size_t kLongest = 1024;
  if (!name.starts_with("_Z") || name.size() > kLongest) return name;
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> readable(
      abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), std::free);
  return status == 0 && readable ? std::string(readable.get()) : name;
}

}  // namespace tarn::host
