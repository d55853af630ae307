#pragma once

#include <string>
#include <string_view>

// XML fragments that Tarn's tolerant parser reads back unchanged. The parser ends an attribute only
// at its quote, treats a backslash as an escape of the next byte, and knows few entities.
namespace tarn::tools {

// Returns ` name="value"`. Appends a space to a value that would escape its own closing quote.
std::string XmlAttribute(std::string_view name, std::string_view value);
// Same as XmlAttribute for a path: appends a backslash instead, which does not change the meaning
// of a path.
std::string XmlPathAttribute(std::string_view name, std::string_view path);
// Encodes text between two tags: "<" becomes an entity.
std::string XmlContent(std::string_view text);

}  // namespace tarn::tools
