#include "components/tools/ResponseFile.h"

#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

std::string QuoteGnu(const std::string& argument) {
  if (argument.empty()) return "\"\"";
  std::string quoted;
  for (const char c : argument) {
    if (IsSpace(c) || c == '\\' || c == '"' || c == '\'') quoted += '\\';
    quoted += c;
  }
  return quoted;
}

}  // namespace

std::string ResponseText(ResponseStyle style, const std::vector<std::string>& arguments) {
  std::string text;
  if (style == ResponseStyle::None) return text;
  for (const std::string& argument : arguments) text += QuoteGnu(argument) + '\n';
  return text;
}

std::size_t CommandLength(const std::vector<std::string>& arguments) {
  std::size_t length = 0;
  for (const std::string& argument : arguments) length += argument.size() + 1;
  return length;
}

}  // namespace tarn::tools
