#pragma once

#include <QStringView>

namespace tarn::host {

// How the lines of a text are moved in: by tabs, or by so many blanks a level.
struct Indentation {
  bool usesTabs = false;
  int width = 4;

  bool operator==(const Indentation&) const = default;
};

// What most of the first lines do; `fallback` for what they don't say. Linear.
Indentation GuessIndentation(QStringView text, Indentation fallback);

}  // namespace tarn::host
