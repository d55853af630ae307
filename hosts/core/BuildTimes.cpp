#include "hosts/core/BuildTimes.h"

#include <algorithm>
#include <charconv>

namespace tarn::host {

std::vector<ApplicationTimes> ParseBuildTimes(std::string_view lines) {
  std::vector<ApplicationTimes> list;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    const std::string_view line = lines.substr(0, end);
    lines.remove_prefix(std::min(end + 1, lines.size()));
    if (line.starts_with("A ")) {
      list.push_back({std::string(line.substr(2)), {}});
    } else if (line.starts_with("N ") && !list.empty()) {
      long count = 0;
      const char* const last = line.data() + line.size();
      const auto [place, error] = std::from_chars(line.data() + 2, last, count);
      if (error != std::errc() || place == last) continue;
      list.back().tools.push_back(
          {std::string(place + 1, last), {}, std::chrono::milliseconds(count)});
    } else if (line.starts_with("P ") && !list.empty() && !list.back().tools.empty()) {
      list.back().tools.back().path = line.substr(2);
    }
  }
  return list;
}

}  // namespace tarn::host
