#include "project/FileDamage.h"

#include <algorithm>

#include "project/NodeTypes.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"
#include "xml/XmlString.h"

namespace tarn {

namespace {

// More than is listed, because losses are not reported exactly in text order.
constexpr std::size_t kMaxCollected = 100 * DamageCollector::kMaxDamage;

// Depth below `Options` at which the content belongs to the property manager.
constexpr int kOptionDepth = 4;

// Returns true if the element may contain text: a stored option, or other data attached to a node.
bool MayHoldText(const CXmlNode* element) {
  for (int depth = 0; element != nullptr; element = element->GetParent(), ++depth) {
    if (IsContentNode(*element) || element->NameView() == "Configs") continue;
    return element->NameView() != "Options" || depth >= kOptionDepth;
  }
  return false;
}

// A marker alone or followed by the name of a version.
bool IsConflictLine(std::string_view line) {
  return IsConflictMark(line) && (line.size() == 7 || IsXmlSpace(line[7]));
}

}  // namespace

std::string FileDamage::ToString() const {
  return file + ":" + (line > 0 ? std::to_string(line) + ": " : " ") + what;
}

DamageCollector::DamageCollector(std::string_view fileText) : text_(fileText) {
  const std::size_t zero = text_.find('\0');
  if (zero != text_.npos) places_.push_back({zero, "a zero byte; nothing after it is read", false});
}

void DamageCollector::OnLoss(XmlLoss loss, const char* position, std::string_view name,
                             const CXmlNode* element) {
  hasCData_ = hasCData_ || loss == XmlLoss::StoredCData;
  const bool isText = loss == XmlLoss::KeptText && !HoldsElements(*element);
  if ((isText || loss == XmlLoss::StoredCData) && MayHoldText(element)) return;
  if (places_.size() == kMaxCollected) return;
  const auto offset = static_cast<std::size_t>(position - text_.data());
  const bool isKept = loss == XmlLoss::KeptText || loss == XmlLoss::RepeatedAttribute;
  places_.push_back({offset, DescribeLoss(text_, loss, offset, name), isKept});
}

void DamageCollector::OnElement(const char* position, const CXmlNode& element) {
  elements_.emplace_back(&element, static_cast<std::size_t>(position - text_.data()));
}

void DamageCollector::Add(const CXmlNode& element, std::string what, bool isKept) {
  if (places_.size() == kMaxCollected) return;
  // If an address was reused, the later element is the one that exists.
  for (const auto& [node, offset] : elements_) offsets_[node] = offset;
  elements_.clear();
  const auto found = offsets_.find(&element);
  places_.push_back({found == offsets_.end() ? 0 : found->second, std::move(what), isKept});
}

void DamageCollector::AddConflictMarks() {
  std::size_t comment = text_.find("<!--");
  for (std::size_t line = 0; line < text_.size();) {
    std::size_t next = std::min(text_.find('\n', line), text_.size() - 1) + 1;
    if (comment < line) {
      const std::size_t end = text_.find("-->", comment + 4);
      comment = end == text_.npos ? end : text_.find("<!--", end + 3);
      if (end == text_.npos || end < line) continue;
      next = std::min(text_.find('\n', end), text_.size() - 1) + 1;
    } else if (IsConflictLine(text_.substr(line, next - line)) && places_.size() < kMaxCollected) {
      places_.push_back({line, std::string(kConflictDamage), true});
    }
    line = next;
  }
}

std::vector<FileDamage> DamageCollector::Collect(const std::string& file) {
  AddConflictMarks();
  std::stable_sort(places_.begin(), places_.end(),
                   [](const Place& a, const Place& b) { return a.offset < b.offset; });
  std::vector<FileDamage> damage;
  int line = 1;
  std::size_t counted = 0;
  for (const Place& place : places_) {
    line += CountLineEnds(text_, counted, place.offset);
    counted = place.offset;
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
