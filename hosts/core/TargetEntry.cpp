#include "hosts/core/TargetEntry.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "hosts/core/LogEntry.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr const char* kNumericFacts[] = {"flash", "ram", "eeprom", "clock", "pins"};
constexpr const char* kNamedFacts[] = {"maker", "core",      "toolchain", "board",
                                       "mcu",   "simulator", "upload"};

// Attributes that have a field of their own in an entry.
bool IsFact(const std::string& name) {
  for (const char* own : {"Header", "Description", "Datasheet", "Config"}) {
    if (name == own) return false;
  }
  return true;
}

// Parses "64K", "1.5M" or "4096". K is 1000 for a frequency and 1024 for a size.
std::optional<std::uint64_t> ParseAmount(const std::string& text, std::uint64_t kilo) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, fault] = std::from_chars(text.data(), end, number);
  if (fault != std::errc() || number < 0) return std::nullopt;
  const std::string unit = FoldCase(std::string(rest, end));
  if (unit == "m" || unit == "mb" || unit == "mhz") {
    number *= static_cast<double>(kilo * kilo);
  } else if (unit == "k" || unit == "kb" || unit == "khz") {
    number *= static_cast<double>(kilo);
  } else if (!unit.empty()) {
    return std::nullopt;
  }
  constexpr double kMost = 1e18;
  if (!(number < kMost)) return std::nullopt;  // also not a number
  return static_cast<std::uint64_t>(number + 0.5);
}

bool Compare(std::uint64_t left, const std::string& comparison, std::uint64_t right) {
  if (comparison == ">=") return left >= right;
  if (comparison == "<=") return left <= right;
  if (comparison == ">") return left > right;
  if (comparison == "<") return left < right;
  return left == right;
}

void Collect(const CXmlNode& family, std::vector<std::string>& families,
             std::vector<TargetEntry>& targets) {
  for (const CXmlNode* child : family.GetChildren()) {
    const std::string name = GetAttribute(child, "Header");
    if (child->NameView() == "Target") {
      TargetEntry& entry = targets.emplace_back();
      entry.name = name;
      entry.families = families;
      entry.description = GetAttribute(child, "Description");
      entry.datasheet = GetAttribute(child, "Datasheet");
      entry.configuration = GetAttribute(child, "Config");
      for (const CXmlAttr& each : child->Attributes()) {
        if (!IsFact(each.GetName())) continue;
        entry.facts.emplace_back(FoldCase(each.GetName()), each.GetValue());
      }
    } else {
      families.push_back(name);
      Collect(*child, families, targets);
      families.pop_back();
    }
  }
}

}  // namespace

std::string TargetEntry::GetFact(const std::string& fact) const {
  for (const auto& [known, value] : facts) {
    if (known == fact) return value;
  }
  return {};
}

bool IsNumericFact(const std::string& fact) {
  return std::find(std::begin(kNumericFacts), std::end(kNumericFacts), fact) !=
         std::end(kNumericFacts);
}

std::optional<TargetCondition> TargetCondition::Parse(const std::string& text) {
  const std::size_t begin = text.find_first_of("<>=");
  if (begin == std::string::npos) return std::nullopt;
  const std::size_t end = text.find_first_not_of("<>=", begin);
  if (end == std::string::npos) return std::nullopt;
  TargetCondition condition;
  condition.fact_ = FoldCase(text.substr(0, begin));
  condition.comparison_ = text.substr(begin, end - begin);
  condition.value_ = FoldCase(text.substr(end));
  if (IsNumericFact(condition.fact_)) {
    const auto number = ParseAmount(condition.value_, condition.fact_ == "clock" ? 1000 : 1024);
    if (!number) return std::nullopt;
    condition.number_ = *number;
    for (const char* known : {"=", "<", "<=", ">", ">="}) {
      if (condition.comparison_ == known) return condition;
    }
    return std::nullopt;
  }
  const bool isNamed = std::find(std::begin(kNamedFacts), std::end(kNamedFacts), condition.fact_) !=
                       std::end(kNamedFacts);
  return isNamed && condition.comparison_ == "=" ? std::optional(condition) : std::nullopt;
}

// A part that comes in several packages, with "28,32" pins, meets a condition if one of them does.
bool TargetCondition::IsMetBy(const TargetEntry& target) const {
  const std::string value = target.GetFact(fact_);
  if (!IsNumericFact(fact_)) return EqualNoCase(value, value_);
  const std::string stated = value.empty() ? "0" : value;
  for (const std::string_view each : Split(stated, ',')) {
    const auto number = ParseAmount(std::string(each), 1);
    if (number && Compare(*number, comparison_, number_)) return true;
  }
  return false;
}

std::vector<TargetEntry> ReadTargets(const std::string& xml) {
  std::vector<TargetEntry> targets;
  std::vector<std::string> families;
  if (const auto root = ParseXml(xml)) Collect(*root, families, targets);
  return targets;
}

std::string ReadTargetProblem(const std::string& xml) {
  return GetAttribute(ParseXml(xml).get(), "Problem");
}

}  // namespace tarn::host
