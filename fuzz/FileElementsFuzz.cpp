// Positions of the elements of any text: each is inside the text, after its parent and its
// preceding siblings.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "hosts/core/check/FileElements.h"

namespace {

int CheckChildren(const tarn::host::FileElements& elements, int lines) {
  int count = 0;
  std::vector<std::size_t> pending = {0};
  while (!pending.empty()) {
    const tarn::host::FileElement& parent = elements[pending.back()];
    pending.pop_back();
    int line = parent.line;
    for (const std::size_t child : parent.children) {
      if (elements[child].line < line || elements[child].line > lines) std::abort();
      line = elements[child].line;
      pending.push_back(child);
      ++count;
    }
  }
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto lines = static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
  const tarn::host::FileElements elements(text);
  if (CheckChildren(elements, lines) > std::count(text.begin(), text.end(), '<')) std::abort();
  return 0;
}
