#include "hosts/desktop/TextSearch.h"

#include <QRegularExpression>

namespace tarn::host {

namespace {

QRegularExpression Compile(const SearchOptions& options) {
  QString pattern = options.isExpression ? options.text : QRegularExpression::escape(options.text);
  if (options.isWholeWord) pattern = "(?<!\\w)(?:" + pattern + ")(?!\\w)";
  QRegularExpression::PatternOptions flags = QRegularExpression::MultilineOption;
  flags |= QRegularExpression::UseUnicodePropertiesOption;
  if (!options.isCaseSensitive) flags |= QRegularExpression::CaseInsensitiveOption;
  return QRegularExpression("(*ANYCRLF)" + pattern, flags);
}

QString Expand(const QString& replacement, const QRegularExpressionMatch& match) {
  QString text;
  for (qsizetype i = 0; i < replacement.size(); ++i) {
    const bool isEscape = replacement[i] == '\\' && i + 1 < replacement.size();
    if (!isEscape) {
      text += replacement[i];
      continue;
    }
    const QChar code = replacement[++i];
    if (code >= '0' && code <= '9') {
      text += match.captured(code.digitValue());
    } else if (code == 'n') {
      text += '\n';
    } else if (code == 't') {
      text += '\t';
    } else {
      text += code;
    }
  }
  return text;
}

}  // namespace

SearchResult SearchText(const QString& text, const SearchOptions& options,
                        const QString& replacement, qsizetype most) {
  SearchResult result;
  if (options.text.isEmpty()) return result;
  const QRegularExpression expression = Compile(options);
  if (!expression.isValid()) {
    result.problem = expression.errorString();
    return result;
  }
  auto matches = expression.globalMatch(text);
  while (matches.hasNext()) {
    const QRegularExpressionMatch match = matches.next();
    if (match.capturedLength() == 0) continue;
    if (result.hits.size() == most) {
      result.isCut = true;
      break;
    }
    const QString put = options.isExpression ? Expand(replacement, match) : replacement;
    result.hits.append({match.capturedStart(), match.capturedLength(), put});
  }
  return result;
}

}  // namespace tarn::host
