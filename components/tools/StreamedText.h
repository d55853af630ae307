#pragma once

#include <string>
#include <string_view>

namespace tarn::tools {

// Output of a program for a user who watches it while it runs: without terminal sequences, carriage
// returns and other control characters, and without a text that the program adds to each line end.
// Chunks may end anywhere; what can't be judged yet is held back until the next one.
class StreamedText {
 public:
  explicit StreamedText(std::string trimmed) : trimmed_(std::move(trimmed)) {}

  std::string Add(std::string_view chunk);
  // Returns the rest.
  std::string Finish();

 private:
  enum class State { Text, Escape, Sequence };

  State state_ = State::Text;
  std::string trimmed_;
  std::string held_;  // end of the text that is a beginning of `trimmed_`
};

}  // namespace tarn::tools
