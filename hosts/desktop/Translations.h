#pragma once

#include <QLocale>

namespace tarn::host {

// Has the program's own texts and those of the toolkit shown in the locale's language from now on;
// what isn't translated, or not installed, stays English. Once, ahead of the first window.
void LoadTranslations(const QLocale& locale);

}  // namespace tarn::host
