#pragma once

#include <QElapsedTimer>
#include <QKeyEvent>
#include <functional>
#include <optional>
#include <string>

namespace tarn {

// Type-ahead search in a list: finds the line that starts with the keys typed in quick succession,
// otherwise one that contains them. Repeating a single letter cycles through all lines that start
// with it.
class TypeAhead {
 public:
  // Returns whether a line starts with a string, or contains it.
  using Fits = std::function<bool(int line, const std::string& text)>;

  // Returns whether the key produces a searchable character.
  bool Takes(const QKeyEvent& event) const;
  // Returns the matching line out of `count`, searching from `current` (-1 for none) and wrapping
  // around after the last line; nullopt if none matches. `has` is used only if no line starts with
  // the string; it may be empty.
  std::optional<int> Find(const QKeyEvent& event, int count, int current, const Fits& begins,
                          const Fits& has = {});

 private:
  bool GoesOn() const;

  std::string searched_;
  QElapsedTimer sinceTyped_;
};

}  // namespace tarn
