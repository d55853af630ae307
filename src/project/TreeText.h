#pragma once

#include <cstdint>
#include <string>

#include "project/FileDamage.h"

namespace tarn {

class CXmlNode;

// Extent to which a text was parsed into a tree.
enum class TreeRead : std::uint8_t {
  Whole,
  Partly,     // something before or after the root, or skipped
  Malformed,  // only the part before the syntax error
};

// Parses the text of a project or application file into `root`. Skips a byte order mark, comments
// and an XML declaration before the root. Drops values that consist of whitespace only: the parser
// stores indentation as the value of an element with children, and it would grow with each save.
TreeRead ReadTree(const std::string& text, CXmlNode& root, DamageCollector& collector);

// Same for callers that only need to know if the tree contains all of the text.
bool ReadWholeTree(const std::string& text, CXmlNode& root);

// Renders the text of such a file. Uses the line ending of most lines of `model`; on a tie, that of
// its first line, and CR LF if it has no lines.
std::string WriteTree(const CXmlNode& root, std::string_view model);

}  // namespace tarn
