#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace tarn {

struct PatternStep;

// Backtrack stack of a match attempt, with the latest choice on top. Uses no heap memory for the
// first few entries, and never holds more than kMost.
class ChoiceStack {
 public:
  struct Choice {
    enum Kind : std::uint8_t {
      GoOn,     // continue at `step`, from `at`
      Shorten,  // give back bytes of the star `step`: at most to `at`, at least to `low`
      Restore,  // restore `at` as the position in `slot`
    };
    Kind kind;
    std::uint8_t slot;
    const PatternStep* step;
    const char* at;
    const char* low;
  };
  // Limit of the stack size. A match that exceeds it continues with BreadthMatcher.
  static constexpr std::size_t kMost = 65536;

  ChoiceStack() = default;
  ChoiceStack(const ChoiceStack&) = delete;
  ChoiceStack& operator=(const ChoiceStack&) = delete;

  bool IsEmpty() const { return count == 0; }
  bool IsFull() const { return count == kMost; }
  void Clear() { count = 0; }
  // Returns false once the stack is full.
  [[nodiscard]] bool Push(const Choice& choice) {
    if (count == capacity) Grow();
    choices[count++] = choice;
    return !IsFull();
  }
  Choice Pop() { return choices[--count]; }

 private:
  static constexpr std::size_t kFew = 32;

  void Grow() {
    auto larger = std::make_unique<Choice[]>(2 * capacity);
    std::copy(choices, choices + count, larger.get());
    capacity *= 2;
    many = std::move(larger);
    choices = many.get();
  }

  std::array<Choice, kFew> few;
  std::unique_ptr<Choice[]> many;
  Choice* choices = few.data();
  std::size_t capacity = kFew;
  std::size_t count = 0;
};

}  // namespace tarn
