#include "project/TreeText.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/text/Text.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Returns the position after a byte order mark, an XML declaration and comments before the root.
// The parser would assign these comments to the parent.
const char* SkipRemarks(const std::string& text) {
  constexpr std::string_view kRemarks[][2] = {{"<!--", "-->"}, {"<?xml ", "?>"}};
  std::size_t start = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  for (bool hasSkipped = true; hasSkipped;) {
    hasSkipped = false;
    const std::size_t next = text.find_first_not_of(" \t\r\n", start);
    for (const auto& [open, close] : kRemarks) {
      if (next == text.npos || text.compare(next, open.size(), open) != 0) continue;
      const std::size_t end = text.find(close, next);
      if (end == text.npos) continue;
      start = end + close.size();
      hasSkipped = true;
      break;
    }
  }
  return text.c_str() + start;
}

// Returns true if nothing precedes the root's start tag. A comment there would not be written back.
bool BeginsWith(std::string_view text, const CXmlNode& root) {
  text = Trim(text);
  return text.starts_with('<') && text.substr(1).starts_with(root.NameView());
}

// Returns true if the text ends with the root's end tag, or the root is an empty element. Otherwise
// the file was truncated, and the tree lacks the rest.
bool IsClosed(std::string_view text, const CXmlNode& root) {
  text = Trim(text);
  const std::string_view name = root.NameView();
  if (EndsWithNoCase(text, "/>")) return root.GetChildCount() == 0;
  if (text.empty() || text.back() != '>') return false;
  const std::string_view tag = Trim(text.substr(0, text.size() - 1));
  if (tag.size() < name.size() + 2 || tag.substr(tag.size() - name.size()) != name) return false;
  return tag.substr(tag.size() - name.size() - 2, 2) == "</";
}

void DropBlankValues(CXmlNode& node) {
  if (!node.ValueView().empty() && Trim(node.ValueView()).empty()) node.SetValue("");
  for (int i = 0; i < node.GetChildCount(); ++i) {
    if (node.GetChild(i)->GetType() == XmlElement) DropBlankValues(*node.GetChild(i));
  }
}

bool HasLineFeedsAlone(std::string_view text) {
  std::ptrdiff_t balance = 0;  // lines that end in LF minus lines that end in CR LF
  bool isFirstAlone = false;
  std::size_t end = text.find('\n');
  for (bool isFirst = true; end != text.npos; end = text.find('\n', end + 1), isFirst = false) {
    const bool isAlone = end == 0 || text[end - 1] != '\r';
    balance += isAlone ? 1 : -1;
    if (isFirst) isFirstAlone = isAlone;
  }
  return balance > 0 || (balance == 0 && isFirstAlone);
}

}  // namespace

TreeRead ReadTree(const std::string& text, CXmlNode& root, DamageCollector& collector) {
  const char* const end = root.Load(SkipRemarks(text), g_xmlParseInfo, collector);
  const bool isWhole = end != nullptr && !collector.HasCData() &&
                       text.find('\0') == std::string::npos && BeginsWith(text, root) &&
                       IsClosed(text, root) && Trim(end).empty();
  DropBlankValues(root);
  if (end == nullptr) return TreeRead::Malformed;
  return isWhole ? TreeRead::Whole : TreeRead::Partly;
}

bool ReadWholeTree(const std::string& text, CXmlNode& root) {
  DamageCollector collector(text);
  const TreeRead read = ReadTree(text, root, collector);
  const std::vector<FileDamage> damage = collector.Collect({});
  return read == TreeRead::Whole && std::all_of(damage.begin(), damage.end(),
                                                [](const FileDamage& each) { return each.isKept; });
}

std::string WriteTree(const CXmlNode& root, std::string_view model) {
  std::string text = root.ToString(g_xmlDisplayOptions);
  if (HasLineFeedsAlone(model)) std::erase(text, '\r');
  return text;
}

}  // namespace tarn
