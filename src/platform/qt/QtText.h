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

// The place in ToQt(text) of a byte of `text`, and back; inside of a character, that of the
// character. Linear in the distance.
int ToQtPosition(std::string_view text, std::size_t byte);
std::size_t FromQtPosition(std::string_view text, int position);

}  // namespace tarn
