#include "platform/qt/QtText.h"

#include <algorithm>

namespace tarn {

QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString& text) {
  return text.toStdString();
}

int ToQtPosition(std::string_view text, std::size_t byte) {
  return static_cast<int>(ToQt(text.substr(0, byte)).size());
}

// Bytes that are no text count as the toolkit counts them, so the place is looked for by trying.
std::size_t FromQtPosition(std::string_view text, int position) {
  if (position <= 0) return 0;
  // What is plain ASCII up to there has the same places.
  const auto wanted = static_cast<std::size_t>(position);
  const std::string_view front = text.substr(0, wanted);
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  if (std::all_of(front.begin(), front.end(), isAscii)) return front.size();
  const QString whole = ToQt(text);
  const std::size_t bytes = FromQt(whole.left(position)).size();
  // Exact unless substitutes stand in front, which take more bytes than what they stand for.
  if (ToQtPosition(text, bytes) == position) return std::min(bytes, text.size());
  std::size_t low = 0;
  std::size_t high = text.size();
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (ToQtPosition(text, middle) < position) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

}  // namespace tarn
