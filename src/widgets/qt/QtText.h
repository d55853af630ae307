#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

// Texts of the system are bytes, usually UTF-8; those of the toolkit are UTF-16. Bytes that are no
// UTF-8 show as substitutes.
namespace tarn {

QString ToQt(std::string_view text);
std::string FromQt(const QString& text);

// The text of a menu entry or a button: an ampersand before a letter or a digit marks the key that
// chooses it, and any other stands for itself.
QString ToQtLabel(std::string_view text);
// Such a text as it is read.
QString WithoutMnemonic(const QString& label);

// Goes along a text and knows its place both there and in ToQt(text), which is that of a character.
// The text is borrowed.
class TextWalk {
 public:
  explicit TextWalk(std::string_view walkedText);

  std::size_t Byte() const { return byte; }
  int Position() const { return position; }
  // On to the character that has the byte, or the position; never back. Linear in the distance.
  void GoToByte(std::size_t wanted);
  void GoToPosition(int wanted);

 private:
  std::size_t Length() const;  // of the character here, in bytes
  int Units() const { return Length() == 4 ? 2 : 1; }
  void Next();

  std::string_view text;
  std::size_t byte;
  int position = 0;
};

// The place in ToQt(text) of a byte of `text`, and back; inside of a character, that of the
// character. Linear in the distance.
int ToQtPosition(std::string_view text, std::size_t byte);
std::size_t FromQtPosition(std::string_view text, int position);

}  // namespace tarn
