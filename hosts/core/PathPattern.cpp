#include "hosts/core/PathPattern.h"

#include <string>
#include <vector>

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// Backtracks only to the last *.
bool FitsComponent(std::string_view text, std::string_view pattern) {
  std::size_t t = 0, p = 0, star = pattern.npos, mark = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      mark = t;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
      ++p;
      ++t;
    } else if (star != pattern.npos) {
      p = star + 1;
      t = ++mark;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

// Dynamic programming over components: reached[j] is true if the first j patterns match the
// components so far.
bool FitsComponents(const std::vector<std::string_view>& path,
                    const std::vector<std::string_view>& patterns) {
  const std::size_t count = patterns.size();
  std::vector<bool> reached(count + 1, false);
  reached[0] = true;
  const auto skip = [&] {
    for (std::size_t j = 0; j < count; ++j) {
      if (reached[j] && patterns[j] == "**") reached[j + 1] = true;
    }
  };
  skip();
  for (const std::string_view component : path) {
    std::vector<bool> next(count + 1, false);
    for (std::size_t j = 0; j < count; ++j) {
      if (!reached[j]) continue;
      if (patterns[j] == "**")
        next[j] = true;
      else if (FitsComponent(component, patterns[j]))
        next[j + 1] = true;
    }
    reached = std::move(next);
    skip();
    // A folder that matches takes everything in it.
    if (reached[count]) return true;
  }
  return false;
}

}  // namespace

bool FitsPathPattern(std::string_view path, std::string_view pattern) {
  while (pattern.ends_with('/')) pattern.remove_suffix(1);
  while (pattern.starts_with("./")) pattern.remove_prefix(2);
  if (pattern.empty()) return false;
  const bool isAnchored = pattern.find('/') != pattern.npos;
  if (pattern.starts_with('/')) pattern.remove_prefix(1);
  std::vector<std::string_view> patterns = Split(pattern, '/');
  if (!isAnchored) patterns.insert(patterns.begin(), "**");
  return FitsComponents(Split(path, '/'), patterns);
}

}  // namespace tarn::host
