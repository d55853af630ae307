#pragma once

#include <QElapsedTimer>
#include <QKeyEvent>
#include <functional>
#include <optional>
#include <string>

namespace tarn {

// Finds the line of a list that begins with what the user types in a row. One letter again and
// again goes through all lines that begin with it.
class TypeAhead {
 public:
  // Whether the key writes something to be searched for.
  bool Takes(const QKeyEvent& event) const;
  // The line that is found among `count` from `current` on (-1 for none), beginning anew behind the
  // last; nothing when none fits. `begins` tells whether a line begins with a text.
  std::optional<int> Find(const QKeyEvent& event, int count, int current,
                          const std::function<bool(int line, const std::string& text)>& begins);

 private:
  bool GoesOn() const;

  std::string searched;
  QElapsedTimer sinceTyped;
};

}  // namespace tarn
