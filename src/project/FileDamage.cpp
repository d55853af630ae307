#include "project/FileDamage.h"

#include <algorithm>

#include "project/NodeTypes.h"
#include "xml/XmlDamage.h"

namespace tarn {

namespace {

// More than are listed, since the order of losses isn't quite that of the text.
constexpr std::size_t kMaxCollected = 100 * DamageCollector::kMaxDamage;

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
  places.push_back({offset, DescribeLoss(text, loss, offset, name), isKept});
}

std::vector<FileDamage> DamageCollector::Collect(const std::string& file) {
  std::stable_sort(places.begin(), places.end(),
                   [](const Place& a, const Place& b) { return a.offset < b.offset; });
  std::vector<FileDamage> damage;
  int line = 1;
  std::size_t counted = 0;
  for (const Place& place : places) {
    line += CountLineEnds(text, counted, place.offset);
    counted = place.offset;
    const bool isSame =
        !damage.empty() && damage.back().line == line && damage.back().what == place.what;
    if (isSame && damage.back().isKept == place.isKept) continue;
    if (damage.size() == kMaxDamage) {
      damage.push_back({file, line, "more damage, from here on"});
      break;
    }
    damage.push_back({file, line, place.what, place.isKept});
  }
  return damage;
}

}  // namespace tarn
