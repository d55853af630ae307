#include "hosts/frame/BuildInputs.h"

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
  std::vector<std::string> paths;
  for (std::size_t start = list.find('"'); start != list.npos;) {
    // A quote that no comma follows is part of the name.
    std::size_t end = list.find("\",", start + 1);
    if (end == list.npos) end = list.rfind('"');
    if (end <= start) end = list.size();
    paths.emplace_back(list.substr(start + 1, end - start - 1));
    start = list.find('"', end + 1);
  }
  return paths;
}

}  // namespace tarn::host
