#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace tarn {

struct PatternInstruction;

// Backtrack stack of a match attempt, with the latest choice on top. Uses no heap memory for the
// first few entries, and never holds more than kMost.
class BacktrackStack {
 public:
  struct Choice {
    enum Kind : std::uint8_t {
      GoOn,     // continue at `step`, from `at`
      Shorten,  // give back bytes of the star `step`: at most to `at`, at least to `low`
      Restore,  // restore `at` as the position in `slot`
    };
    Kind kind;
    std::uint8_t slot;
    const PatternInstruction* step;
    const char* at;
    const char* low;
  };
  // Limit of the stack size. A match that exceeds it continues with PikeVm.
  static constexpr std::size_t kMost = 65536;

  BacktrackStack() = default;
  BacktrackStack(const BacktrackStack&) = delete;
  BacktrackStack& operator=(const BacktrackStack&) = delete;

  bool IsEmpty() const { return count_ == 0; }
  bool IsFull() const { return count_ == kMost; }
  void Clear() { count_ = 0; }
  // Returns false once the stack is full.
  [[nodiscard]] bool Push(const Choice& choice) {
    if (count_ == capacity_) Grow();
    choices_[count_++] = choice;
    return !IsFull();
  }
  Choice Pop() { return choices_[--count_]; }

 private:
  static constexpr std::size_t kFew = 32;

  void Grow() {
    auto larger = std::make_unique<Choice[]>(2 * capacity_);
    std::copy(choices_, choices_ + count_, larger.get());
    capacity_ *= 2;
    many_ = std::move(larger);
    choices_ = many_.get();
  }

  std::array<Choice, kFew> few_;
  std::unique_ptr<Choice[]> many_;
  Choice* choices_ = few_.data();
  std::size_t capacity_ = kFew;
  std::size_t count_ = 0;
};

}  // namespace tarn
