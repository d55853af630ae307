#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

// Conversions between Tarn's strings, which are bytes and usually UTF-8, and the toolkit's, which
// are UTF-16. Invalid UTF-8 is shown as replacement characters.
namespace tarn {

QString ToQt(std::string_view text);
std::string FromQt(const QString& text);

// Returns the text in the user's language if the host has loaded a translation of it (context
// "Server"), for labels of windows and menus that are made by the server; else the text itself.
QString Translated(const std::string& text);

// Translates and converts the text of a menu entry or a button: an ampersand before a letter or a
// digit marks the mnemonic, any other is literal.
QString ToQtLabel(std::string_view text);
// Removes the mnemonic from such a text.
QString WithoutMnemonic(const QString& label);

// Moves through a text and tracks its byte offset and the corresponding position in ToQt(text),
// always at the start of a character. The text is borrowed.
class TextWalk {
 public:
  explicit TextWalk(std::string_view walkedText);

  std::size_t Byte() const { return byte_; }
  int Position() const { return position_; }
  // Advances to the character that contains the byte, or the position; never moves back. Linear in
  // the distance.
  void GoToByte(std::size_t wanted);
  void GoToPosition(int wanted);

 private:
  std::size_t Length() const;  // length of the current character in bytes
  int Units() const { return Length() == 4 ? 2 : 1; }
  void Next();

  std::string_view text_;
  std::size_t byte_;
  int position_ = 0;
};

// Convert between a byte offset of `text` and a position in ToQt(text). An offset inside a
// character is rounded down to its start. Linear in the offset.
int ToQtPosition(std::string_view text, std::size_t byte);
std::size_t FromQtPosition(std::string_view text, int position);

}  // namespace tarn
