#include "platform/qt/QtText.h"

namespace tarn {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Walk {
  // The toolkit leaves a mark out that stands in front of all.
  explicit Walk(std::string_view walkedText)
      : text(walkedText), byte(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0) {}

  // Of the character here; 1 for a byte that is none.
  std::size_t Length() const {
    const auto at = [this](std::size_t offset) {
      return byte + offset < text.size() ? static_cast<unsigned char>(text[byte + offset]) : 0U;
    };
    const unsigned first = at(0);
    if (first < 0xC2 || first > 0xF4) return 1;
    const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    for (std::size_t i = 1; i < length; ++i) {
      if ((at(i) & 0xC0) != 0x80) return 1;
    }
    // Longer than needed, a half of a pair, or behind the last character.
    const unsigned second = at(1);
    const bool isNone = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return isNone ? 1 : length;
  }
  int Units() const { return Length() == 4 ? 2 : 1; }
  void Next() {
    position += Units();
    byte += Length();
  }

  std::string_view text;
  std::size_t byte;
  int position = 0;
};

}  // namespace

QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString& text) {
  return text.toStdString();
}

QString ToQtLabel(std::string_view text) {
  const QString plain = ToQt(text);
  QString label;
  for (qsizetype i = 0; i < plain.size(); ++i) {
    label += plain[i];
    if (plain[i] != QLatin1Char('&')) continue;
    const QChar next = i + 1 < plain.size() ? plain[i + 1] : QChar();
    if (next == QLatin1Char('&')) ++i;
    if (!next.isLetterOrNumber()) label += QLatin1Char('&');
  }
  return label;
}

QString WithoutMnemonic(const QString& label) {
  QString plain;
  for (qsizetype i = 0; i < label.size(); ++i) {
    if (label[i] == QLatin1Char('&') && ++i == label.size()) break;
    plain += label[i];
  }
  return plain;
}

// Both walk over the characters as the toolkit reads them: a byte that is no text is one of its
// own.
int ToQtPosition(std::string_view text, std::size_t byte) {
  Walk walk(text);
  while (walk.byte < text.size() && walk.byte + walk.Length() <= byte) walk.Next();
  return walk.position;
}

std::size_t FromQtPosition(std::string_view text, int position) {
  Walk walk(text);
  while (walk.byte < text.size() && walk.position + walk.Units() <= position) walk.Next();
  return walk.byte;
}

}  // namespace tarn
