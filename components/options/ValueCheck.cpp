#include "components/options/ValueCheck.h"

#include <charconv>
#include <cstdint>
#include <optional>

#include "platform/text/Text.h"

namespace tarn::options {

namespace {

// Parses an integer, decimal or hexadecimal with the prefix "0x".
std::optional<std::int64_t> ReadNumber(std::string_view text) {
  const bool isHex = StartsWithNoCase(text, "0x");
  if (isHex) text.remove_prefix(2);
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, failed] = std::from_chars(text.data(), end, number, isHex ? 16 : 10);
  if (failed != std::errc() || stop != end || (isHex && text.front() == '-')) return {};
  return number;
}

std::string Range(const PropertyDefinition& property) {
  const bool hasMinimum = !property.minimum.empty();
  const bool hasMaximum = !property.maximum.empty();
  if (hasMinimum && hasMaximum) return " from " + property.minimum + " to " + property.maximum;
  if (hasMinimum) return " of at least " + property.minimum;
  return hasMaximum ? " of at most " + property.maximum : std::string();
}

std::string CheckNumber(const PropertyDefinition& property, std::string_view value) {
  const auto number = ReadNumber(Trim(value));
  const auto minimum = ReadNumber(property.minimum);
  const auto maximum = ReadNumber(property.maximum);
  const bool fits =
      number && (!minimum || *number >= *minimum) && (!maximum || *number <= *maximum);
  if (fits) return {};
  return "Invalid value \"" + std::string(value) + "\"; expected a whole number" + Range(property) +
         ", decimal or with the prefix 0x.";
}

std::string CheckChoice(const PropertyDefinition& property, std::string_view value) {
  std::string list;
  for (const Choice& choice : property.choices) {
    if (EqualNoCase(choice.value, value)) return {};
    list += (list.empty() ? "" : ", ") + (choice.value.empty() ? "nothing" : choice.value);
  }
  return "Invalid value \"" + std::string(value) + "\"; expected one of: " + list + ".";
}

std::string CheckPath(std::string_view value) {
  for (const char c : value) {
    if (static_cast<unsigned char>(c) < 0x20) return "A path must not contain a control character.";
  }
  return {};
}

}  // namespace

std::string CheckAgainst(const PropertyDefinition& property, std::string_view value) {
  switch (property.type) {
    case ValueType::Number:
      return value.empty() ? std::string() : CheckNumber(property, value);
    case ValueType::YesNo:
      if (value.empty() || EqualNoCase(value, "Yes") || EqualNoCase(value, "No")) return {};
      return "Invalid value \"" + std::string(value) + "\"; expected Yes or No.";
    case ValueType::Choice:
      return CheckChoice(property, value);
    case ValueType::File:
    case ValueType::Folder:
    case ValueType::Paths:
      return CheckPath(value);
    case ValueType::Text:
    case ValueType::List:
      break;
  }
  return {};
}

std::string DisplayText(const PropertyDefinition& property, std::string_view value) {
  for (const Choice& choice : property.choices) {
    if (EqualNoCase(choice.value, value)) return choice.label;
  }
  if (property.type == ValueType::YesNo) return EqualNoCase(value, "Yes") ? "Yes" : "No";
  return std::string(value);
}

}  // namespace tarn::options
