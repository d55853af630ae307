#include "patterns/DiagnosticPattern.h"

#include <algorithm>

#include "patterns/CaseInsensitive.h"

namespace tarn {
namespace {

LineKind KindOf(const std::string& text) {
  if (HasWord(text, "error")) return LineKind::Error;
  return HasWord(text, "warning") ? LineKind::Warning : LineKind::Plain;
}

std::string PageName(const std::string& id) {
  const std::size_t first = id.find_first_not_of(' ');
  if (first == id.npos) return {};
  std::string name = id.substr(first, id.find_last_not_of(' ') + 1 - first);
  std::replace(name.begin(), name.end(), ' ', '_');
  std::erase(name, '#');
  return name;
}

}  // namespace

DiagnosticPattern::DiagnosticPattern(const std::string& pattern, const DiagnosticFields& groups)
    : expression_(pattern), fields_(groups) {}

bool DiagnosticPattern::Match(const std::string& text, Diagnostic& found) {
  if (!expression_.Match(text.c_str())) return false;
  if (fields_.file >= 0) found.file = expression_.SubString(fields_.file);
  if (fields_.line >= 0) found.line = expression_.SubString(fields_.line);
  if (fields_.help >= 0) found.help = PageName(expression_.SubString(fields_.help));
  const int type = fields_.type >= 0 ? fields_.type : fields_.message;
  if (type >= 0) found.kind = KindOf(expression_.SubString(type));
  if (fields_.message >= 0) found.message = expression_.SubString(fields_.message);
  return true;
}

}  // namespace tarn
