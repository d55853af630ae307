#include "hosts/core/import/IniFile.h"

#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr int kDeepest = 16;                            // references in references
constexpr int kMostReferences = 10000;                  // for one value
constexpr std::size_t kLongest = std::size_t{1} << 20;  // value after the replacement

// Drops a comment after a value.
std::string WithoutComment(std::string_view line) {
  const std::size_t start = line.find(" ;");
  return std::string(Trim(line.substr(0, start)));
}

// The names of the sections after "extends", separated by commas or line breaks.
std::vector<std::string> BasesOf(const std::map<std::string, std::string>& section) {
  std::vector<std::string> bases;
  const auto extends = section.find("extends");
  if (extends == section.end()) return bases;
  const std::string list = ReplaceAll(extends->second, "\n", ",");
  for (const std::string_view each : Split(list, ',')) {
    bases.emplace_back(Trim(each));
  }
  return bases;
}

}  // namespace

IniFile::IniFile(const std::string& text) {
  std::string section, key;
  std::int64_t number = 0;
  for (const std::string_view line : Split(text, '\n')) {
    ++number;
    const std::string_view content = Trim(line);
    if (content.empty() || content[0] == ';' || content[0] == '#') continue;
    const bool isIndented = IsSpace(line[0]);
    if (content[0] == '[' && content.back() == ']' && !isIndented) {
      section = Trim(content.substr(1, content.size() - 2));
      key.clear();
      if (sections_.try_emplace(section).second) order_.push_back(section);
      continue;
    }
    if (isIndented && !key.empty()) {
      std::string& value = sections_[section][key];
      value += (value.empty() ? "" : "\n") + WithoutComment(content);
      continue;
    }
    const std::size_t equals = content.find('=');
    if (section.empty() || equals == std::string_view::npos || equals == 0) {
      faults_.push_back(ToDecimal(number) + ": " + std::string(content));
      continue;
    }
    key = FoldCase(Trim(content.substr(0, equals)));
    sections_[section][key] = WithoutComment(content.substr(equals + 1));
  }
}

void IniFile::AddKeys(const std::string& section, std::set<std::string>& seen,
                      std::vector<std::string>& keys) const {
  const auto found = sections_.find(section);
  if (found == sections_.end() || !seen.insert(section).second) return;
  for (const auto& [key, value] : found->second) keys.push_back(key);
  for (const std::string& each : BasesOf(found->second)) AddKeys(each, seen, keys);
}

std::vector<std::string> IniFile::GetKeys(const std::string& section) const {
  std::vector<std::string> keys;
  std::set<std::string> seen;
  AddKeys(section, seen, keys);
  return keys;
}

std::string IniFile::Get(const std::string& section, const std::string& key) const {
  references_ = 0;
  return Find(section, key, 0).value_or("");
}

std::optional<std::string> IniFile::Find(const std::string& section, const std::string& key,
                                         int depth) const {
  if (++references_ > kMostReferences || depth > kDeepest) return std::nullopt;
  const auto found = sections_.find(section);
  if (found == sections_.end()) return std::nullopt;
  const auto own = found->second.find(key);
  if (own != found->second.end()) return Expand(own->second, section, depth);
  const std::vector<std::string> bases = BasesOf(found->second);
  for (auto each = bases.rbegin(); each != bases.rend(); ++each) {
    std::optional<std::string> value = Find(*each, key, depth + 1);
    if (value && !value->empty()) return value;
  }
  // The section "env" has the values of all sections "env:NAME".
  return section.starts_with("env:") ? Find("env", key, depth + 1) : std::nullopt;
}

std::string IniFile::Expand(const std::string& value, const std::string& section, int depth) const {
  std::string text;
  std::size_t at = 0;
  while (at < value.size() && text.size() < kLongest) {
    const std::size_t start = value.find("${", at);
    const std::size_t end = start == std::string::npos ? start : value.find('}', start);
    if (end == std::string::npos) break;
    text += value.substr(at, start - at);
    const std::string name = value.substr(start + 2, end - start - 2);
    const std::size_t dot = name.rfind('.');
    std::string from = dot == std::string::npos ? section : name.substr(0, dot);
    if (from == "this") from = section;
    const bool isKnown =
        sections_.contains(from) && depth < kDeepest && references_ < kMostReferences;
    const std::optional<std::string> referred =
        isKnown ? Find(from, FoldCase(name.substr(dot + 1)), depth + 1) : std::nullopt;
    text += referred.value_or(value.substr(start, end + 1 - start));
    at = end + 1;
  }
  return text + value.substr(std::min(at, value.size()));
}

}  // namespace tarn::host
