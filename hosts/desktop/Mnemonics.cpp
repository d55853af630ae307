#include "hosts/desktop/Mnemonics.h"

#include <QMenu>
#include <QSet>

namespace tarn::host {

namespace {

// Returns the position of the character after the ampersand that marks the mnemonic; -1 if there
// is none.
qsizetype PlaceOfMnemonic(const QString& label) {
  for (qsizetype i = 0; i + 1 < label.size(); ++i) {
    if (label[i] != u'&') continue;
    if (label[i + 1] != u'&') return i + 1;
    ++i;
  }
  return -1;
}

// Returns the position of a free letter; -1 if all of them are taken.
qsizetype PlaceOfFree(const QString& label, const QSet<QChar>& taken) {
  const qsizetype tab = label.indexOf(u'\t');
  const QString text = tab < 0 ? label : label.first(tab);
  qsizetype inside = -1;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (!text[i].isLetterOrNumber() || taken.contains(text[i].toLower())) continue;
    const bool isFirst = i == 0 || !text[i - 1].isLetterOrNumber();
    if (isFirst) return i;
    if (inside < 0) inside = i;
  }
  return inside;
}

}  // namespace

QStringList WithMnemonics(QStringList labels) {
  QSet<QChar> taken;
  for (const QString& each : labels) {
    if (const qsizetype place = PlaceOfMnemonic(each); place >= 0) {
      taken.insert(each[place].toLower());
    }
  }
  for (QString& each : labels) {
    if (PlaceOfMnemonic(each) >= 0) continue;
    const qsizetype place = PlaceOfFree(each, taken);
    if (place < 0) continue;
    taken.insert(each[place].toLower());
    each.insert(place, u'&');
  }
  return labels;
}

void KeepMnemonics(QMenu& menu) {
  QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu] {
    QStringList labels;
    for (const QAction* each : menu.actions()) labels += each->text();
    labels = WithMnemonics(std::move(labels));
    for (qsizetype i = 0; i < labels.size(); ++i) {
      QAction& action = *menu.actions()[i];
      if (action.text() != labels[i]) action.setText(labels[i]);
    }
  });
}

}  // namespace tarn::host
