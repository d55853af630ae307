// Reports everything that a parse doesn't store to its listener. Called only for the rare input
// with losses, so none of this is optimised for speed.

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "xml/XmlReader.h"
#include "xml/XmlString.h"

namespace tarn {

namespace {

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

// The target of an XML declaration is exactly "xml".
bool IsDeclaration(std::string_view instruction) {
  return instruction.size() > 3 && EqualsIgnoringCase(instruction.substr(0, 3), "xml") &&
         IsXmlSpace(instruction[3]);
}

const char* SkipRemarks(const char* p) {
  for (;;) {
    while (IsXmlSpace(*p)) ++p;
    const char* end = std::strncmp(p, "<!--", 4) == 0 ? std::strstr(p + 4, "-->") : nullptr;
    if (!end) return p;
    p = end + 3;
  }
}

}  // namespace

void XmlReader::ReportLoss(XmlLoss loss, const char* position, std::string_view name) {
  losses_->OnLoss(loss, position, name, IsReadingTop() ? nullptr : levels_.back().node);
}

const char* XmlReader::FindFirstLost(Span text) {
  const auto found = std::find_if_not(text.begin(), text.end(), IsXmlSpace);
  return found == text.end() ? nullptr : &*found;
}

void XmlReader::ReportSkipped(Span text) {
  const char* const first = FindFirstLost(text);
  if (first) ReportLoss(XmlLoss::SkippedText, first, {first, text.data() + text.size()});
}

void XmlReader::ReportEnd(const char* p) {
  hasEnded_ = true;
  if (IsReadingTop()) {
    ReportLoss(XmlLoss::NoElement, p, {});
  } else {
    ReportLoss(XmlLoss::OpenElement, p, levels_.back().node->NameView());
  }
}

void XmlReader::ReportSpecial(const char* position, Span text, bool isInstruction, bool isPlaced) {
  if (isInstruction) {
    if (!IsReadingTop() || !IsDeclaration(text)) ReportLoss(XmlLoss::Instruction, position, {});
  } else {
    ReportLoss(isPlaced ? XmlLoss::StoredCData : XmlLoss::SkippedText, position, text);
  }
}

void XmlReader::ReportElementName(const char* tag, const XmlInternedName& name) {
  const bool isMarkup = tag[1] == '!';
  ReportLoss(isMarkup ? XmlLoss::UnknownMarkup : XmlLoss::BadElementName, tag, name.View());
}

void XmlReader::ReportElement(const char* tag, bool isOpen, bool isTop) {
  losses_->OnElement(tag, isTop ? *top_ : isOpen ? *levels_.back().node : *waiting_.back());
}

void XmlReader::ReportRepeats(const char* tag) {
  std::unordered_set<const XmlInternedName*> seen;
  for (const AttrSpan& attr : attrs_) {
    if (seen.insert(attr.name).second) continue;
    ReportLoss(XmlLoss::RepeatedAttribute, tag, attr.name->View());
  }
}

void XmlReader::ReportValue(const Level& level) {
  const CXmlNode& node = *level.node;
  const char* const begin = level.textStart;
  // The stored value was decoded, so its length differs from that of the run.
  bool isProtected = false;
  const char* const end = FindUnescaped(begin, '<', isProtected);
  if (std::find(begin, end, '<') != end) {
    losses_->OnLoss(XmlLoss::ProtectedTag, begin, node.NameView(), &node);
  }
  losses_->OnLoss(XmlLoss::KeptText, begin, {begin, end}, &node);
}

void XmlReader::ReportTail(const char* text, const char* p) {
  // Skip the close tag's own ">" if a space ended the name in it.
  const char* const next = SkipRemarks(p);
  const bool isAfterName = p != text && p[-1] == ' ';
  p = isAfterName && *next == '>' ? SkipRemarks(next + 1) : next;
  if (*p) ReportLoss(XmlLoss::Trailing, p, {});
}

}  // namespace tarn
