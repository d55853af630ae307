#pragma once

#include <QLocale>

namespace tarn::host {

// Installs the translations of the program and the toolkit for the locale; missing ones are shown
// in English. Must be called once, before the first window is created.
void LoadTranslations(const QLocale& locale);

}  // namespace tarn::host
