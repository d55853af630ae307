#pragma once

#include <QElapsedTimer>
#include <QKeyEvent>
#include <functional>
#include <optional>
#include <string>

namespace tarn {

// Finds the line of a list that begins with what the user types in a row, or else one that has it
// somewhere. One letter again and again goes through all lines that begin with it.
class TypeAhead {
 public:
  // Whether a line begins with a text, or has it.
  using Fits = std::function<bool(int line, const std::string& text)>;

  // Whether the key writes something to be searched for.
  bool Takes(const QKeyEvent& event) const;
  // The line that is found among `count` from `current` on (-1 for none), beginning anew behind the
  // last; nothing when none fits. `has` is asked only when no line begins with the text, and may be
  // empty.
  std::optional<int> Find(const QKeyEvent& event, int count, int current, const Fits& begins,
                          const Fits& has = {});

 private:
  bool GoesOn() const;

  std::string searched;
  QElapsedTimer sinceTyped;
};

}  // namespace tarn
