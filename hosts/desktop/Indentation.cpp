#include "hosts/desktop/Indentation.h"

#include <QStringTokenizer>
#include <algorithm>
#include <array>
#include <utility>

namespace tarn::host {

namespace {

constexpr int kLines = 1000;
// A wider indentation is an alignment with the previous line.
constexpr qsizetype kWidest = 8;

qsizetype CountAtStart(QStringView line, QChar c) {
  const auto end = std::find_if(line.begin(), line.end(), [c](QChar each) { return each != c; });
  return end - line.begin();
}

}  // namespace

Indentation GuessIndentation(QStringView text, Indentation fallback) {
  int lines = 0;
  int withTabs = 0;
  int withBlanks = 0;
  qsizetype before = 0;
  std::array<int, kWidest + 1> steps{};  // frequency of each indentation step
  for (const QStringView line : QStringTokenizer(text, u'\n')) {
    if (++lines > kLines) break;
    const qsizetype blanks = CountAtStart(line, u' ');
    const QStringView rest = line.mid(blanks);
    // A star continues a comment, one space to the right of its start.
    if (rest.isEmpty() || rest == u"\r" || rest.front() == u'*') continue;
    if (rest.front() == u'\t' && blanks == 0) ++withTabs;
    if (blanks > 1) ++withBlanks;
    const qsizetype step = blanks - std::exchange(before, blanks);
    if (step > 1 && step <= kWidest) ++steps[static_cast<std::size_t>(step)];
  }
  if (withTabs > withBlanks) return {true, fallback.width};
  const auto most = std::max_element(steps.begin(), steps.end());
  if (*most > 0) return {false, static_cast<int>(most - steps.begin())};
  return {fallback.usesTabs && withBlanks == 0, fallback.width};
}

}  // namespace tarn::host
