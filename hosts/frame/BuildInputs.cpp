#include "hosts/frame/BuildInputs.h"

#include <algorithm>

#include "hosts/frame/StateEnvelope.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kDigits = 16;

}  // namespace

std::vector<ApplicationInputs> ParseBuildInputs(std::string_view lines) {
  std::vector<ApplicationInputs> list;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    const std::string_view line = lines.substr(0, end);
    lines.remove_prefix(std::min(end + 1, lines.size()));
    if (line.starts_with("A ")) {
      list.push_back({line.substr(2), {}});
    } else if (line.starts_with("N ") && line.size() > kDigits + 3 && !list.empty()) {
      BuildInput node;
      node.output = line.substr(kDigits + 3);
      if (FromHex(line.substr(2, kDigits), node.signature)) list.back().nodes.push_back(node);
    }
  }
  return list;
}

std::vector<std::string> SplitQuotedPaths(std::string_view list) {
  std::vector<std::string> paths;
  const std::vector<std::string_view> pieces = Split(list, '"');
  for (std::size_t i = 1; i < pieces.size(); i += 2) paths.emplace_back(pieces[i]);
  return paths;
}

}  // namespace tarn::host
