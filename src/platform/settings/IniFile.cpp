#include "platform/settings/IniFile.h"

#include <algorithm>

#include "platform/text/Text.h"

namespace tarn {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

bool FitsOnALine(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == text.npos;
}

bool Contains(const std::vector<std::string>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [name](const std::string& each) { return EqualNoCase(each, name); });
}

}  // namespace

IniFile::IniFile(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    const std::string_view line = text.substr(0, end);
    const bool marked = lines_.empty() && line.starts_with(kByteOrderMark);
    lines_.push_back(ParseLine(marked ? line.substr(kByteOrderMark.size()) : line));
    lines_.back().text = line;
    text.remove_prefix(end);
  }
}

IniFile::Line IniFile::ParseLine(std::string_view text) {
  Line line{std::string(text), Kind::Other, {}};
  const std::string_view content = Trim(text);
  if (content.starts_with('[')) {
    const std::size_t end = content.find(']');
    if (end == content.npos) return line;
    line.kind = Kind::Section;
    line.name = Trim(content.substr(1, end - 1));
  } else if (!content.starts_with(';')) {
    const std::size_t equals = content.find('=');
    if (equals == content.npos) return line;
    line.name = Trim(content.substr(0, equals));
    if (!line.name.empty()) line.kind = Kind::Value;
  }
  return line;
}

std::size_t IniFile::FindSection(std::string_view section, std::size_t from) const {
  const std::string_view wanted = Trim(section);
  while (from < lines_.size() &&
         !(lines_[from].kind == Kind::Section && EqualNoCase(lines_[from].name, wanted))) {
    ++from;
  }
  return from;
}

std::size_t IniFile::EndOfSection(std::size_t header) const {
  std::size_t end = header + 1;
  while (end < lines_.size() && lines_[end].kind != Kind::Section) ++end;
  return end;
}

std::size_t IniFile::FindValue(std::string_view section, std::string_view name) const {
  const std::string_view wanted = Trim(name);
  for (std::size_t header = FindSection(section, 0); header < lines_.size();
       header = FindSection(section, header + 1)) {
    const std::size_t end = EndOfSection(header);
    for (std::size_t i = header + 1; i < end; ++i) {
      if (lines_[i].kind == Kind::Value && EqualNoCase(lines_[i].name, wanted)) return i;
    }
  }
  return lines_.size();
}

std::optional<std::string> IniFile::Read(std::string_view section, std::string_view name) const {
  const std::size_t place = FindValue(section, name);
  if (place == lines_.size()) return std::nullopt;
  const std::string_view text = lines_[place].text;
  return std::string(WithoutQuotes(Trim(text.substr(text.find('=') + 1))));
}

std::vector<std::string> IniFile::SectionNames() const {
  std::vector<std::string> names;
  for (const Line& line : lines_) {
    if (line.kind == Kind::Section && !Contains(names, line.name)) names.push_back(line.name);
  }
  return names;
}

std::vector<std::string> IniFile::ValueNames(std::string_view section) const {
  std::vector<std::string> names;
  for (std::size_t header = FindSection(section, 0); header < lines_.size();
       header = FindSection(section, header + 1)) {
    const std::size_t end = EndOfSection(header);
    for (std::size_t i = header + 1; i < end; ++i) {
      if (lines_[i].kind == Kind::Value && !Contains(names, lines_[i].name)) {
        names.push_back(lines_[i].name);
      }
    }
  }
  return names;
}

std::string_view IniFile::LineBreak() const {
  return !lines_.empty() && lines_.front().text.ends_with("\r\n") ? "\r\n" : "\n";
}

void IniFile::Insert(std::size_t place, std::string text) {
  if (place > 0 && !lines_[place - 1].text.ends_with('\n')) lines_[place - 1].text += LineBreak();
  text += LineBreak();
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place), ParseLine(text));
}

bool IniFile::Write(std::string_view section, std::string_view name, std::string_view value) {
  const std::string_view header = Trim(section);
  const std::string_view key = Trim(name);
  if (!FitsOnALine(header) || !FitsOnALine(key) || !FitsOnALine(value)) return false;
  if (header.find(']') != header.npos || key.empty() || key.find('=') != key.npos ||
      key.starts_with('[') || key.starts_with(';')) {
    return false;
  }
  const std::size_t place = FindValue(header, key);
  if (place < lines_.size()) {
    std::string& text = lines_[place].text;
    const std::size_t start = text.find('=') + 1;
    const std::size_t end = text.find_last_not_of("\r\n") + 1;
    text.replace(start, std::max(start, end) - start, value);
    return true;
  }
  const std::size_t start = FindSection(header, 0);
  if (start == lines_.size()) Insert(start, "[" + std::string(header) + "]");
  // Comments after the last value may belong to the next section.
  std::size_t last = EndOfSection(start) - 1;
  while (last > start && lines_[last].kind != Kind::Value) --last;
  Insert(last + 1, std::string(key) + "=" + std::string(value));
  return true;
}

bool IniFile::Remove(std::string_view section, std::string_view name) {
  bool removed = false;
  for (std::size_t place = FindValue(section, name); place < lines_.size();
       place = FindValue(section, name)) {
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(place));
    removed = true;
  }
  return removed;
}

bool IniFile::RemoveSection(std::string_view section) {
  bool removed = false;
  for (std::size_t header = FindSection(section, 0); header < lines_.size();
       header = FindSection(section, header)) {
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(header),
                 lines_.begin() + static_cast<std::ptrdiff_t>(EndOfSection(header)));
    removed = true;
  }
  return removed;
}

std::string IniFile::ToText() const {
  std::string text;
  for (const Line& line : lines_) text += line.text;
  return text;
}

std::string IniFile::Quoted(std::string_view value) {
  const bool plain = Trim(value) == value && WithoutQuotes(value) == value;
  return plain ? std::string(value) : "\"" + std::string(value) + "\"";
}

}  // namespace tarn
