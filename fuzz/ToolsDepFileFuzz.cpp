#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <unordered_set>

#include "components/tools/DepFile.h"

// Reads any dependency file: names are not empty, unique, and together not longer than the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::unordered_set<std::string> seen;
  std::size_t length = 0;
  for (const std::string& name : tarn::tools::ReadDepFile(text).names) {
    if (name.empty() || !seen.insert(name).second) std::abort();
    length += name.size();
  }
  if (length > size) std::abort();
  return 0;
}
