#include "widgets/qt/QtText.h"

#include <QCoreApplication>

namespace tarn {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString& text) {
  return text.toStdString();
}

QString Translated(const std::string& text) {
  return QCoreApplication::translate("Server", text.c_str());
}

QString ToQtLabel(std::string_view text) {
  const QString plain = Translated(std::string(text));
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

// The toolkit drops a byte order mark at the beginning.
TextWalk::TextWalk(std::string_view walkedText)
    : text_(walkedText), byte_(text_.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0) {}

// Length by the toolkit's rules: an invalid byte is a character by itself.
std::size_t TextWalk::Length() const {
  const auto at = [this](std::size_t offset) {
    return byte_ + offset < text_.size() ? static_cast<unsigned char>(text_[byte_ + offset]) : 0U;
  };
  const unsigned first = at(0);
  if (first < 0xC2 || first > 0xF4) return 1;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return 1;
  }
  // Overlong, a surrogate, or beyond the last code point.
  const unsigned second = at(1);
  const bool isNone = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                      (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
  return isNone ? 1 : length;
}

void TextWalk::GoToByte(std::size_t wanted) {
  while (byte_ < text_.size() && byte_ + Length() <= wanted) Next();
}

void TextWalk::GoToPosition(int wanted) {
  while (byte_ < text_.size() && position_ + Units() <= wanted) Next();
}

void TextWalk::Next() {
  position_ += Units();
  byte_ += Length();
}

int ToQtPosition(std::string_view text, std::size_t byte) {
  TextWalk walk(text);
  walk.GoToByte(byte);
  return walk.Position();
}

std::size_t FromQtPosition(std::string_view text, int position) {
  TextWalk walk(text);
  walk.GoToPosition(position);
  return walk.Byte();
}

}  // namespace tarn
