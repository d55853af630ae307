#include "hosts/core/TargetName.h"

#include <cctype>

#include "hosts/core/LogEntry.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

std::string Reduced(const std::string& name) {
  std::string reduced;
  for (const char c : FoldCase(name)) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) reduced += c;
  }
  return reduced;
}

}  // namespace

NameFit FitTargetName(const CXmlNode& target, const std::string& name) {
  const std::string wanted = Reduced(name);
  const std::string label = GetAttribute(&target, "Header");
  if (wanted.empty()) return NameFit::None;
  if (Reduced(label) == wanted) return NameFit::Same;
  const std::string aliases = GetAttribute(&target, "Aliases");
  for (const std::string_view each : Split(aliases, ';')) {
    if (Reduced(std::string(each)) == wanted) return NameFit::Same;
  }
  const std::size_t blank = label.find(' ');
  const bool isRest = blank != std::string::npos && Reduced(label.substr(blank)) == wanted;
  return isRest ? NameFit::Similar : NameFit::None;
}

}  // namespace tarn::host
