#include "components/tools/VersionText.h"

#include <utility>

namespace tarn::tools {

namespace {

std::string EscapedName(const std::string& name) {
  std::string escaped;
  for (const char c : name) {
    if (c == ' ' || c == '#') escaped += '\\';
    if (c == '$') escaped += '$';
    escaped += c;
  }
  return escaped;
}

}  // namespace

std::string FillVersion(std::string_view text, const VersionValues& values) {
  const std::pair<std::string_view, std::string_view> names[] = {
      {"@GIT_DESCRIPTION@", values.description},
      {"@GIT_COMMIT@", values.commit},
      {"@GIT_DATE@", values.date},
      {"@GIT_DIRTY@", values.isDirty ? "1" : "0"},
      {"@BUILD_NUMBER@", values.buildNumber},
  };
  std::string filled;
  while (!text.empty()) {
    std::size_t used = 1;
    std::string_view value = text.substr(0, 1);
    for (const auto& [name, each] : names) {
      if (!text.starts_with(name)) continue;
      used = name.size();
      value = each;
    }
    filled += value;
    text.remove_prefix(used);
  }
  return filled;
}

std::string DependencyRule(const std::string& target, const std::vector<std::string>& files) {
  std::string rule = EscapedName(target) + ":";
  for (const std::string& each : files) {
    if (each.find_first_of("\r\n") == each.npos) rule += " \\\n  " + EscapedName(each);
  }
  return rule + "\n";
}

}  // namespace tarn::tools
