#include "components/tools/StreamedText.h"

#include <utility>

namespace tarn::tools {

std::string StreamedText::Add(std::string_view chunk) {
  std::string text;
  for (const char c : chunk) {
    if (state_ == State::Escape) {
      state_ = c == '[' ? State::Sequence : State::Text;
      continue;
    }
    if (state_ == State::Sequence) {
      if (c >= '@' && c <= '~') state_ = State::Text;
      continue;
    }
    if (c == '\033') {
      state_ = State::Escape;
      continue;
    }
    if ((static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t') || c == 0x7f) continue;
    if (c == '\n' && held_ == trimmed_) {
      held_.clear();
    } else if (held_.size() < trimmed_.size() && c == trimmed_[held_.size()]) {
      held_ += c;
      continue;
    }
    text += std::exchange(held_, {});
    // The character may be the beginning after all.
    if (!trimmed_.empty() && c == trimmed_.front()) {
      held_ += c;
    } else {
      text += c;
    }
  }
  return text;
}

std::string StreamedText::Finish() {
  return std::exchange(held_, {});
}

}  // namespace tarn::tools
