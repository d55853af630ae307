#pragma once

#include <QList>
#include <QString>

namespace tarn::host {

struct SearchOptions {
  QString text;
  bool isCaseSensitive = false;
  bool isWholeWord = false;
  bool isExpression = false;  // the text is a regular expression
};

struct SearchHit {
  qsizetype start = 0;
  qsizetype length = 0;
  QString replacement;
};

// All hits in a text, each with its replacement string: in the replacement, `\1` to `\9` stand for
// the groups of a regular expression, `\n` and `\t` for a line end and a tab. Empty matches are
// ignored.
struct SearchResult {
  QList<SearchHit> hits;
  bool isCut = false;  // there are more hits than requested
  QString problem;     // error in the expression; empty if valid
};
SearchResult SearchText(const QString& text, const SearchOptions& options,
                        const QString& replacement, qsizetype most);

}  // namespace tarn::host
