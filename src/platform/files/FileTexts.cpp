#include "platform/files/FileTexts.h"

#include <charconv>

namespace tarn {

std::vector<FileBytes> AsBytes(std::span<const FileText> texts) {
  std::vector<FileBytes> list;
  for (const FileText& each : texts) list.push_back({each.path, each.text});
  return list;
}

std::string JoinFileTexts(std::span<const FileText> texts) {
  std::string all;
  for (const FileText& each : texts) {
    all += std::to_string(each.text.size()) + ' ' + each.path + '\n' + each.text;
  }
  return all;
}

std::optional<std::vector<FileText>> SplitFileTexts(std::string_view all) {
  std::vector<FileText> texts;
  while (!all.empty()) {
    const std::size_t end = all.find('\n');
    if (end == all.npos) return std::nullopt;
    const std::string_view head = all.substr(0, end);
    all.remove_prefix(end + 1);
    std::size_t size = 0;
    const auto number = std::from_chars(head.data(), head.data() + head.size(), size);
    const auto digits = static_cast<std::size_t>(number.ptr - head.data());
    const bool isHead = number.ec == std::errc() && digits < head.size() && head[digits] == ' ';
    if (!isHead || size > all.size()) return std::nullopt;
    texts.push_back({std::string(head.substr(digits + 1)), std::string(all.substr(0, size))});
    all.remove_prefix(size);
  }
  return texts;
}

}  // namespace tarn
