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
  enum class Fit { None, Inside, Start };

  // Whether the key writes something to be searched for.
  bool Takes(const QKeyEvent& event) const;
  // The line that is found among `count` from `current` on (-1 for none), beginning anew behind the
  // last; nothing when none fits. `fit` tells where a line has a text.
  std::optional<int> Find(const QKeyEvent& event, int count, int current,
                          const std::function<Fit(int line, const std::string& text)>& fit);

 private:
  bool GoesOn() const;

  std::string searched;
  QElapsedTimer sinceTyped;
};

}  // namespace tarn
