#pragma once

#include <string>
#include <string_view>

// Pieces of XML text that the system's tolerant reader takes in whole: it ends an attribute only
// at its quote, skips the byte behind a backslash, and knows few entities.
namespace tarn::tools {

// ` name="value"`. A value that would protect its own closing quote gets a blank at its end.
std::string XmlAttribute(std::string_view name, std::string_view value);
// Like XmlAttribute for a path: one that would protect the quote gets one more backslash instead,
// which keeps its meaning.
std::string XmlPathAttribute(std::string_view name, std::string_view path);
// The text between two tags; "<" is written as an entity.
std::string XmlContent(std::string_view text);

}  // namespace tarn::tools
