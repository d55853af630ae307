#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace tarn {

struct PatternStep;

// The choices that a try at a match can come back to, the last one on top. Takes no memory from the
// heap until there are more than a few, and never holds more than kMost.
class ChoiceStack {
 public:
  struct Choice {
    enum Kind : std::uint8_t {
      GoOn,     // at `step`, from `at`
      Shorten,  // what the star `step` takes: up to `at` at most, to `low` at least
      Restore,  // `at` as the position in `slot`
    };
    Kind kind;
    std::uint8_t slot;
    const PatternStep* step;
    const char* at;
    const char* low;
  };
  static constexpr std::size_t kMost = 65536;

  ChoiceStack() = default;
  ChoiceStack(const ChoiceStack&) = delete;
  ChoiceStack& operator=(const ChoiceStack&) = delete;

  bool IsEmpty() const { return count == 0; }
  bool IsFull() const { return count == kMost; }
  void Clear() { count = 0; }
  // False once the stack is full.
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
