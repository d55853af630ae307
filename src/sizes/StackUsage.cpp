#include "sizes/StackUsage.h"

#include "sizes/TextScan.h"

namespace tarn::sizes {

namespace {

// Splits "file:line:column:function" at the first colon that two numbers follow: both names may
// contain colons. clang writes no column.
bool SplitPosition(std::string_view text, FunctionStack& stack) {
  for (std::size_t colon = text.find(':'); colon != text.npos; colon = text.find(':', colon + 1)) {
    std::string_view rest = text.substr(colon + 1);
    const std::size_t lineEnd = rest.find(':');
    const auto line = ParseWhole<int>(rest.substr(0, lineEnd));
    if (lineEnd == rest.npos || !line) continue;
    rest.remove_prefix(lineEnd + 1);
    const std::size_t columnEnd = rest.find(':');
    if (columnEnd != rest.npos && ParseWhole<int>(rest.substr(0, columnEnd))) {
      rest.remove_prefix(columnEnd + 1);
    }
    stack.line = *line;
    stack.file = text.substr(0, colon);
    stack.function = rest;
    return true;
  }
  return false;
}

}  // namespace

std::vector<FunctionStack> ReadStackUsage(std::string_view text) {
  std::vector<FunctionStack> functions;
  while (!text.empty()) {
    std::string_view line = TakeLine(text);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::size_t kindTab = line.rfind('\t');
    const std::size_t sizeTab =
        kindTab == line.npos || kindTab == 0 ? line.npos : line.rfind('\t', kindTab - 1);
    FunctionStack stack;
    if (sizeTab == line.npos) continue;
    stack.kind = line.substr(kindTab + 1);
    const auto bytes = ParseWhole<std::uint64_t>(line.substr(sizeTab + 1, kindTab - sizeTab - 1));
    if (!bytes || !SplitPosition(line.substr(0, sizeTab), stack)) continue;
    stack.bytes = *bytes;
    functions.push_back(std::move(stack));
  }
  return functions;
}

}  // namespace tarn::sizes
