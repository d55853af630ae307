#include "hosts/desktop/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace tarn::host {

namespace {

void Install(const QLocale& locale, const QString& name, const QString& folder) {
  auto* const translator = new QTranslator(QCoreApplication::instance());
  if (translator->load(locale, name, "_", folder)) {
    QCoreApplication::installTranslator(translator);
  } else {
    delete translator;
  }
}

}  // namespace

void LoadTranslations(const QLocale& locale) {
  const QString own = QCoreApplication::applicationDirPath() + "/../share/tarn/translations";
  // English has a file too, for plural forms. The translator installed last is queried first.
  Install(QLocale(QLocale::English), "tarn", own);
  for (const char* toolkits : {"qtbase", "qscintilla"}) {
    Install(locale, toolkits, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  }
  Install(locale, "tarn", own);
}

}  // namespace tarn::host
