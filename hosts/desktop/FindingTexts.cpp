#include "hosts/desktop/FindingTexts.h"

#include <QCoreApplication>

#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

// Translates a text of the table in hosts/core/check/Finding.cpp.
QString Translate(const char* text) {
  return QCoreApplication::translate("Findings", text);
}

}  // namespace

QString FindingHeading(FindingKind kind) {
  return Translate(HeadingOf(kind));
}

QString FindingSentence(const Finding& finding, const std::string& folder) {
  const auto shorten = [&folder](const std::string& path) {
    const bool isBelow = path.size() > folder.size() && path.starts_with(folder);
    return isBelow ? path.substr(folder.size()) : path;
  };
  QString sentence = Translate(SentenceOf(finding.kind));
  if (!sentence.isEmpty()) sentence[0] = sentence[0].toUpper();
  return ToQt(FillFinding(FromQt(sentence), finding, shorten));
}

}  // namespace tarn::host
