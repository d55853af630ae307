#include "hosts/core/check/FileElements.h"

#include <algorithm>
#include <optional>

#include "xml/XmlEntities.h"

namespace tarn::host {

namespace {

constexpr std::string_view kSpaces = " \t\r\n";
// Maximum number of children skipped by a search: for a node that was added in memory, the rest is
// not scanned.
constexpr std::size_t kLookAhead = 1000;

struct Skipped {
  std::string_view begin, end;
};

// Constructs that contain no project elements.
constexpr Skipped kSkipped[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}};

// Returns true if the text ends with the name as a separate token, possibly followed by spaces.
bool EndsWithName(std::string_view text, std::string_view name) {
  text = text.substr(0, text.find_last_not_of(kSpaces) + 1);
  if (!text.ends_with(name)) return false;
  text.remove_suffix(name.size());
  return !text.empty() && kSpaces.find(text.back()) != kSpaces.npos;
}

std::string AttributeIn(std::string_view tag, std::string_view name) {
  for (std::size_t at = tag.find('='); at != tag.npos; at = tag.find('=', at + 1)) {
    const std::size_t quote = tag.find_first_not_of(kSpaces, at + 1);
    if (quote == tag.npos || (tag[quote] != '"' && tag[quote] != '\'')) continue;
    const std::size_t end = tag.find(tag[quote], quote + 1);
    if (EndsWithName(tag.substr(0, at), name)) {
      std::string value(tag.substr(quote + 1, end == tag.npos ? end : end - quote - 1));
      value.resize(g_xmlEntities.DecodeTo(value.data(), value));
      return value;
    }
    if (end == tag.npos) break;
    at = end;
  }
  return {};
}

// Returns the position of the ">" that ends the tag at `at`; those in quotes are skipped.
std::size_t FindTagEnd(std::string_view text, std::size_t at) {
  char quote = '\0';
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return at;
    }
  }
  return text.npos;
}

// Returns the end of the construct without elements at `at`; nullopt if an element begins there.
std::optional<std::size_t> SkipOther(std::string_view text, std::size_t at) {
  for (const Skipped& each : kSkipped) {
    if (text.substr(at, each.begin.size()) != each.begin) continue;
    const std::size_t end = text.find(each.end, at + each.begin.size());
    return end == text.npos ? text.size() : end + each.end.size();
  }
  return std::nullopt;
}

}  // namespace

FileElements::FileElements(std::string_view text) : elements_(1) {
  int line = 1;
  std::size_t counted = 0;  // lines are counted up to here
  for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at)) {
    if (const auto end = SkipOther(text, at)) {
      at = *end;
      continue;
    }
    const std::size_t end = FindTagEnd(text, at);
    if (end == text.npos) return;
    line += static_cast<int>(std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                                        text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
    counted = at;
    const std::string_view tag = text.substr(at + 1, end - at - 1);
    if (tag.starts_with('/')) {
      Close(tag.substr(1, tag.find_last_not_of(kSpaces)));
    } else {
      Open(tag, line);
    }
    at = end + 1;
  }
}

void FileElements::Open(std::string_view tag, int line) {
  const bool isEmpty = tag.ends_with('/');
  if (isEmpty) tag.remove_suffix(1);
  FileElement element;
  element.name = tag.substr(0, tag.find_first_of(kSpaces));
  element.header = AttributeIn(tag, "Header");
  element.path = AttributeIn(tag, "Path");
  if (element.path.empty()) element.path = AttributeIn(tag, "Extern");
  element.line = line;
  element.parent = current_;
  const std::size_t number = elements_.size();
  elements_[current_].children.push_back(number);
  elements_.push_back(std::move(element));
  if (isEmpty) return;
  current_ = number;
  ++openNames_[elements_[number].name];
}

// A closing tag without an open element is ignored; otherwise it also closes the elements inside.
// Each element is closed exactly once, so the total time is linear.
void FileElements::Close(std::string_view name) {
  const auto open = openNames_.find(std::string(name));
  if (open == openNames_.end() || open->second == 0) return;
  for (bool isDone = false; !isDone;) {
    isDone = elements_[current_].name == name;
    --openNames_[elements_[current_].name];
    current_ = elements_[current_].parent;
  }
}

std::size_t FileElements::FindChild(std::size_t parent, std::string_view name,
                                    std::string_view header, std::size_t& after) const {
  const std::vector<std::size_t>& children = elements_[parent].children;
  const std::size_t end = std::min(children.size(), after + kLookAhead);
  for (std::size_t i = after; i < end; ++i) {
    const FileElement& child = elements_[children[i]];
    if (child.name != name || child.header != header) continue;
    after = i + 1;
    return children[i];
  }
  return 0;
}

}  // namespace tarn::host
