#include "patterns/LineRecogniser.h"

#include <algorithm>
#include <string_view>

#include "patterns/CaseBlind.h"

namespace tarn {
namespace {

constexpr std::array<std::string_view, 4> kPathWords{"error", "warning", "erreur", "averti"};

}  // namespace

LineRecogniser::LineRecogniser() {
  shapes_.reserve(kLineRows.size());
  for (const LineRow& row : kLineRows) shapes_.emplace_back(row.pattern, row.fields);
}

ToolLine LineRecogniser::Recognise(const std::string& line, LineShape* special) {
  ToolLine found;
  found.message = line;
  if (special == nullptr || !special->Recognise(line, found)) {
    std::find_if(shapes_.begin(), shapes_.end(),
                 [&](LineShape& shape) { return shape.Recognise(line, found); });
  }
  if (!found.file.empty()) return found;
  const bool hasWord = std::any_of(kPathWords.begin(), kPathWords.end(),
                                   [&](std::string_view word) { return HasWord(line, word); });
  if (hasWord && path_.Match(line.c_str())) found.file = path_.SubString(1);
  return found;
}

}  // namespace tarn
