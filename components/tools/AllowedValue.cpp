#include "components/tools/AllowedValue.h"

#include <algorithm>

namespace tarn::tools {

namespace {

bool IsAlphanumeric(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The first character must not make the value a flag or a path.
bool IsMadeOf(std::string_view value, std::string_view further) {
  return IsAlphanumeric(value.front()) && std::ranges::all_of(value, [&](char c) {
           return IsAlphanumeric(c) || further.find(c) != further.npos;
         });
}

bool IsPort(std::string_view value) {
  constexpr std::string_view kDevices = "/dev/";
  constexpr std::string_view kFurther = "_.+-:,=@";
  if (!value.starts_with(kDevices)) return IsMadeOf(value, kFurther);
  value.remove_prefix(kDevices.size());
  const bool climbs = value.find("..") != value.npos;
  return !climbs && !value.empty() && IsMadeOf(value, "_.+-:,=@/");
}

bool IsText(std::string_view value) {
  return std::ranges::none_of(value, [](char c) {
    constexpr std::string_view kSpecial = "\"\\'$[]{};`";
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7f || kSpecial.find(c) != kSpecial.npos;
  });
}

}  // namespace

bool IsAllowed(AllowedValue allowed, std::string_view value) {
  if (value.empty()) return true;
  switch (allowed) {
    case AllowedValue::Any:
      return true;
    case AllowedValue::Name:
      return IsMadeOf(value, "_.+-");
    case AllowedValue::Port:
      return IsPort(value);
    case AllowedValue::Text:
      return IsText(value);
  }
  return false;
}

std::string_view DescribeAllowed(AllowedValue allowed) {
  switch (allowed) {
    case AllowedValue::Name:
      return "letters, digits and _ . + -";
    case AllowedValue::Port:
      return "a device in /dev, or letters, digits and _ . + - : , = @";
    case AllowedValue::Text:
      return "no quotes, brackets, dollar signs, semicolons and backslashes";
    case AllowedValue::Any:
      break;
  }
  return "any value";
}

}  // namespace tarn::tools
