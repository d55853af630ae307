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

// All places in a text, each with what a replacement would put there: `\1` to `\9` of the
// replacement stand for what the groups of a regular expression have found, `\n` and `\t` for a
// line end and a tab. Places without any character don't count.
struct SearchResult {
  QList<SearchHit> hits;
  bool isCut = false;  // there are more than were asked for
  QString problem;     // what is wrong with the expression; empty when nothing is
};
SearchResult SearchText(const QString& text, const SearchOptions& options,
                        const QString& replacement, qsizetype most);

}  // namespace tarn::host
