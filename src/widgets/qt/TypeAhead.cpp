#include "widgets/qt/TypeAhead.h"

#include <QApplication>
#include <algorithm>

#include "widgets/qt/QtText.h"

namespace tarn {

bool TypeAhead::GoesOn() const {
  return !searched_.empty() && sinceTyped_.elapsed() < QApplication::keyboardInputInterval();
}

bool TypeAhead::Takes(const QKeyEvent& event) const {
  const QString typed = event.text();
  const Qt::KeyboardModifiers others =
      event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
  if (typed.isEmpty() || others != Qt::NoModifier || !typed[0].isPrint()) return false;
  return typed[0] != QLatin1Char(' ') || GoesOn();
}

std::optional<int> TypeAhead::Find(const QKeyEvent& event, int count, int current,
                                   const Fits& begins, const Fits& has) {
  const std::string letter = FromQt(event.text());
  const bool isRepeated = GoesOn() && searched_ == letter;
  if (!GoesOn()) searched_.clear();
  if (!isRepeated) searched_ += letter;
  sinceTyped_.start();
  // With further letters, the line found by the first ones may still match.
  const bool mayStay = current < 0 || searched_.size() > letter.size();
  const int first = std::max(0, current) + (mayStay ? 0 : 1);
  for (const Fits* const fits : {&begins, &has}) {
    for (int i = 0; *fits && i < count; ++i) {
      const int line = (first + i) % count;
      if ((*fits)(line, searched_)) return line;
    }
  }
  return std::nullopt;
}

}  // namespace tarn
