#include "output/MessageTable.h"

#include <array>
#include <mutex>
#include <utility>

namespace tarn {
namespace {

// Kind of every row, ten per line.
constexpr std::array<int, kMessageCount> kRowKinds = {
    3, 3, 3, 3, 3, 3, 1, 1, 1, 1,  //
    5, 5, 5, 5, 5, 5, 1, 1, 1, 3,  //
    3, 3, 1, 1, 1, 1, 3, 3, 3, 3,  //
    3, 3, 3, 3, 3, 3, 3, 3, 3,
};

// The build worker reads operation strings while the main thread loads or frees them.
struct Texts {
  std::mutex guard;
  std::array<std::optional<std::string>, kMessageCount> rows;
};

Texts& ProcessTexts() {
  static Texts texts;
  return texts;
}

bool IsRow(int index) {
  return index >= 0 && index < kMessageCount;
}

}  // namespace

KindValues ValuesOfKind(int kind) {
  switch (kind) {
    case kKindPlain:
      return {"0", "0"};
    case kKindError:
      return {"1", "2"};
    case kKindWarning:
      return {"2", "1"};
    case kKindHeading:
      return {"5", "5"};
    default:
      return {"3", "0"};
  }
}

int GetMessageKind(int index) {
  return IsRow(index) ? kRowKinds[static_cast<std::size_t>(index)] : kKindNote;
}

std::optional<std::string> FindMessageText(int index) {
  if (!IsRow(index)) return std::nullopt;
  Texts& texts = ProcessTexts();
  const std::lock_guard hold(texts.guard);
  return texts.rows[static_cast<std::size_t>(index)];
}

std::string GetMessageText(int index) {
  return FindMessageText(index).value_or(std::string());
}

void SetMessageText(int index, std::string text) {
  if (!IsRow(index)) return;
  Texts& texts = ProcessTexts();
  const std::lock_guard hold(texts.guard);
  texts.rows[static_cast<std::size_t>(index)] = std::move(text);
}

void FreeMessageTexts() {
  Texts& texts = ProcessTexts();
  const std::lock_guard hold(texts.guard);
  for (std::optional<std::string>& row : texts.rows) row.reset();
}

}  // namespace tarn
