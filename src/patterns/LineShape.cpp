#include "patterns/LineShape.h"

#include <algorithm>

#include "patterns/CaseBlind.h"

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

LineShape::LineShape(const std::string& pattern, const LineFields& groups)
    : expression(pattern), fields(groups) {}

bool LineShape::Recognise(const std::string& text, ToolLine& found) {
  if (!expression.Match(text.c_str())) return false;
  if (fields.file >= 0) found.file = expression.SubString(fields.file);
  if (fields.line >= 0) found.line = expression.SubString(fields.line);
  if (fields.help >= 0) found.help = PageName(expression.SubString(fields.help));
  const int type = fields.type >= 0 ? fields.type : fields.message;
  if (type >= 0) found.kind = KindOf(expression.SubString(type));
  if (fields.message >= 0) found.message = expression.SubString(fields.message);
  return true;
}

}  // namespace tarn
