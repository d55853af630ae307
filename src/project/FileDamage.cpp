#include "project/FileDamage.h"

#include <algorithm>

#include "project/NodeTypes.h"
#include "xml/XmlText.h"

namespace tarn {

namespace {

// "%" stands for the name, or for the beginning of the text that was lost.
struct LossText {
  XmlLoss loss;
  const char* text;
};

constexpr LossText kLossTexts[] = {
    {XmlLoss::SkippedText, "stray text \"%\""},
    {XmlLoss::KeptText, "stray text \"%\""},
    {XmlLoss::ProtectedTag, "a backslash before \"<\" makes the tag a part of the text of <%>"},
    {XmlLoss::Instruction, "a processing instruction, which is not read"},
    {XmlLoss::StoredCData, "a CDATA section, which is not read"},
    {XmlLoss::UnknownMarkup, "unknown markup <%"},
    {XmlLoss::BadElementName, "malformed tag <%"},
    {XmlLoss::BadAttribute, "malformed attribute \"%\""},
    {XmlLoss::RepeatedAttribute, "the attribute \"%\" is repeated; only the first one is read"},
    {XmlLoss::OpenElement, "the file ends inside <%>"},
    {XmlLoss::BrokenTag, "incomplete tag of <%>; nothing after it is read"},
    {XmlLoss::OpenMarkup, "% without its end; nothing after it is read"},
    {XmlLoss::ForeignCloseTag, "</%> closes another element; nothing after it is read"},
    {XmlLoss::TooDeep, "elements nest too deeply; nothing after this is read"},
    {XmlLoss::NoElement, "the file ends before its first element"},
    {XmlLoss::Trailing, "content after the end of the root element, which is not read"},
};

constexpr std::string_view kConflictMarks[] = {"<<<<<<<", "|||||||", "=======", ">>>>>>>"};
constexpr const char* kConflict = "a merge conflict that was not resolved";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kMaxExcerpt = 40;
// More than are listed, since the order of losses isn't quite that of the text.
constexpr std::size_t kMaxCollected = 100 * DamageCollector::kMaxDamage;

// The beginning of a text on one line, without control characters.
std::string Excerpt(std::string_view text) {
  std::string out;
  for (const char c : text.substr(0, text.find_first_of("\r\n"))) {
    if (out.size() == kMaxExcerpt) return out + "...";
    out += static_cast<unsigned char>(c) < ' ' || c == '\x7F' ? ' ' : c;
  }
  return out;
}

// Levels below `Options` down to those whose content is the property manager's own.
constexpr int kOptionDepth = 4;

// The element may have text of its own: a stored option, or what else a node carries for other
// parts of the system.
bool MayHoldText(const CXmlNode* element) {
  for (int depth = 0; element != nullptr; element = element->GetParent(), ++depth) {
    if (IsContentNode(*element) || element->NameView() == "Configs") continue;
    return element->NameView() != "Options" || depth >= kOptionDepth;
  }
  return false;
}

bool HoldsElements(const CXmlNode& node) {
  for (int i = 0; i < node.GetChildCount(); ++i) {
    if (node.GetChild(i)->GetType() == XmlElement) return true;
  }
  return false;
}

bool IsConflictMark(std::string_view line) {
  return std::any_of(std::begin(kConflictMarks), std::end(kConflictMarks),
                     [line](std::string_view mark) { return line.starts_with(mark); });
}

// A mark alone, or with the name of a version after it.
bool IsConflictLine(std::string_view line) {
  return IsConflictMark(line) && (line.size() == 7 || IsXmlSpace(line[7]));
}

}  // namespace

std::string FileDamage::ToString() const {
  return file + ":" + (line > 0 ? std::to_string(line) + ": " : " ") + what;
}

DamageCollector::DamageCollector(std::string_view fileText) : text(fileText) {
  const std::size_t zero = text.find('\0');
  if (zero != text.npos) places.push_back({zero, "a zero byte; nothing after it is read", false});
}

void DamageCollector::OnLoss(XmlLoss loss, const char* position, std::string_view name,
                             const CXmlNode* element) {
  hasCData = hasCData || loss == XmlLoss::StoredCData;
  const bool isText = loss == XmlLoss::KeptText && !HoldsElements(*element);
  if ((isText || loss == XmlLoss::StoredCData) && MayHoldText(element)) return;
  if (places.size() == kMaxCollected) return;
  const auto offset = static_cast<std::size_t>(position - text.data());
  const bool isKept = loss == XmlLoss::KeptText || loss == XmlLoss::RepeatedAttribute;
  places.push_back({offset, Describe(loss, offset, name), isKept});
}

void DamageCollector::OnElement(const char* position, const CXmlNode& element) {
  elements.emplace_back(&element, static_cast<std::size_t>(position - text.data()));
}

void DamageCollector::Add(const CXmlNode& element, std::string what, bool isKept) {
  if (places.size() == kMaxCollected) return;
  // Of an address that was used twice the later element is the one that exists.
  for (const auto& [node, offset] : elements) offsets[node] = offset;
  elements.clear();
  const auto found = offsets.find(&element);
  places.push_back({found == offsets.end() ? 0 : found->second, std::move(what), isKept});
}

void DamageCollector::AddConflictMarks() {
  std::size_t comment = text.find("<!--");
  for (std::size_t line = 0; line < text.size();) {
    std::size_t next = std::min(text.find('\n', line), text.size() - 1) + 1;
    if (comment < line) {
      const std::size_t end = text.find("-->", comment + 4);
      comment = end == text.npos ? end : text.find("<!--", end + 3);
      if (end == text.npos || end < line) continue;
      next = std::min(text.find('\n', end), text.size() - 1) + 1;
    } else if (IsConflictLine(text.substr(line, next - line)) && places.size() < kMaxCollected) {
      places.push_back({line, kConflict, true});
    }
    line = next;
  }
}

std::string_view DamageCollector::LineAt(std::size_t offset) const {
  const std::size_t before = text.substr(0, offset).find_last_of("\r\n");
  const std::string_view rest = text.substr(before == text.npos ? 0 : before + 1);
  return rest.substr(0, rest.find_first_of("\r\n"));
}

std::string DamageCollector::Describe(XmlLoss loss, std::size_t offset,
                                      std::string_view name) const {
  if (IsConflictMark(LineAt(offset))) return kConflict;
  if (offset == 0 && text.starts_with(kByteOrderMark)) return "a byte order mark";
  const auto* const row = std::find_if(std::begin(kLossTexts), std::end(kLossTexts),
                                       [loss](const LossText& each) { return each.loss == loss; });
  std::string what = row->text;
  if (const std::size_t mark = what.find('%'); mark != what.npos) {
    what.replace(mark, 1, Excerpt(name));
  }
  return what;
}

std::vector<FileDamage> DamageCollector::Collect(const std::string& file) {
  AddConflictMarks();
  std::stable_sort(places.begin(), places.end(),
                   [](const Place& a, const Place& b) { return a.offset < b.offset; });
  std::vector<FileDamage> damage;
  int line = 1;
  std::size_t counted = 0;
  for (const Place& place : places) {
    for (; counted < place.offset && counted < text.size(); ++counted) {
      const bool isPair = text.substr(counted, 2) == "\r\n";
      if (text[counted] == '\n' || (text[counted] == '\r' && !isPair)) ++line;
    }
    if (!damage.empty() && damage.back().line == line && damage.back().what == place.what) {
      damage.back().isKept = damage.back().isKept && place.isKept;
      continue;
    }
    if (damage.size() == kMaxDamage) {
      damage.push_back({file, line, "more damage, from here on"});
      break;
    }
    damage.push_back({file, line, place.what, place.isKept});
  }
  return damage;
}

}  // namespace tarn
