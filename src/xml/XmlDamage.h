#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "xml/XmlLoss.h"

namespace tarn {

// Describes damage of XML files in words. What is damage depends on the file: see
// project/FileDamage.h for project files, and `LoadWhole()` for files of the installation.

// Returns a description such as "the file ends inside <Set>" of one loss that the parse of `text`
// reported at `offset`. `name` is the name that the listener received.
std::string DescribeLoss(std::string_view text, XmlLoss loss, std::size_t offset,
                         std::string_view name);

// Byte order mark that some editors write at the start of a UTF-8 file.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// Description of a line that is a marker of an unresolved merge conflict.
inline constexpr std::string_view kConflictDamage = "a merge conflict that was not resolved";
// Returns true if the line begins with a marker of a merge conflict.
bool IsConflictMark(std::string_view line);

// Returns the number of line ends from `begin` to `end`. A pair of carriage return and line feed is
// one line end.
int CountLineEnds(std::string_view text, std::size_t begin, std::size_t end);

bool HoldsElements(const CXmlNode& node);

// Determines if elements without children may have text in a file.
enum class XmlTexts : std::uint8_t { None, InElements };

// Loads a file that must not lose anything. Returns its first fault as "FILE:LINE: description", or
// an empty string if there is none; `node` has everything that could be read. Comments, processing
// instructions and a byte order mark aren't faults. A line that begins with a marker of a merge
// conflict is a fault anywhere, including in a comment.
std::string LoadWhole(CXmlNode& node, const std::string& text, XmlTexts texts,
                      std::string_view file);

}  // namespace tarn
