#include "project/StagedFiles.h"

#include <charconv>
#include <utility>

namespace tarn {

namespace {

std::map<std::string, std::string> ReadList(std::string_view all) {
  std::map<std::string, std::string> files;
  while (!all.empty()) {
    const std::size_t space = all.find(' ');
    const std::size_t end = all.find('\n');
    std::size_t size = 0;
    if (space == all.npos || end == all.npos || space > end) break;
    const auto read = std::from_chars(all.data(), all.data() + space, size);
    if (read.ec != std::errc() || size > all.size() - end - 1) break;
    files[std::string(all.substr(space + 1, end - space - 1))] = all.substr(end + 1, size);
    all.remove_prefix(end + 1 + size);
  }
  return files;
}

}  // namespace

StagedFiles ReadStagedFiles(std::string_view texts, std::string_view bases) {
  StagedFiles staged;
  for (auto& [path, text] : ReadList(texts)) staged[path].text = std::move(text);
  for (auto& [path, base] : ReadList(bases)) {
    const auto found = staged.find(path);
    if (found != staged.end()) found->second.base = std::move(base);
  }
  return staged;
}

}  // namespace tarn
