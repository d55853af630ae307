#include "hosts/core/BuildInputs.h"

#include <algorithm>

#include "platform/text/Text.h"

namespace tarn::host {

std::vector<ApplicationInputs> ParseBuildInputs(std::string_view lines) {
  std::vector<ApplicationInputs> list;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    const std::string_view line = lines.substr(0, end);
    lines.remove_prefix(std::min(end + 1, lines.size()));
    if (line.starts_with("A ")) {
      list.push_back({line.substr(2), {}});
    } else if (line.starts_with("N ") && !list.empty()) {
      list.back().outputs.push_back(line.substr(2));
    }
  }
  return list;
}

std::vector<std::string> SplitQuotedPaths(std::string_view list) {
  return SplitQuotedList(list);
}

}  // namespace tarn::host
