#pragma once

#include <QStringView>

namespace tarn::host {

// Indentation of a text: by tabs, or by `width` spaces per level.
struct Indentation {
  bool usesTabs = false;
  int width = 4;

  bool operator==(const Indentation&) const = default;
};

// Returns the indentation used by most of the first lines; `fallback` supplies what can't be
// determined. Linear time.
Indentation GuessIndentation(QStringView text, Indentation fallback);

}  // namespace tarn::host
