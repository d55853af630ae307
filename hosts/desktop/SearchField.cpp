#include "hosts/desktop/SearchField.h"

#include <QEvent>
#include <QPalette>

namespace tarn::host {

namespace {

constexpr float kTone = 0.65F;

}  // namespace

SearchField::SearchField(const QString& purpose, QWidget* parent) : QLineEdit(parent) {
  setPlaceholderText(purpose);
  setAccessibleName(purpose);
  setClearButtonEnabled(true);
  SetTone();
}

void SearchField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) SetTone();
}

void SearchField::SetTone() {
  QColor tone = palette().color(QPalette::Text);
  tone.setAlphaF(kTone);
  if (palette().color(QPalette::PlaceholderText) == tone) return;
  // Only this role is set, so that all others follow the desktop's palette.
  QPalette own;
  own.setColor(QPalette::PlaceholderText, tone);
  setPalette(own);
}

}  // namespace tarn::host
