#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "xml/XmlLoss.h"

namespace tarn {

// Damage of a structured file in words. What counts as damage depends on the file: files of a
// project have project/FileDamage.h, files of the installation LoadWhole.

// One loss of a parse of `text`, at `offset` in it, with the name that the listener received:
// "the file ends inside <Set>".
std::string DescribeLoss(std::string_view text, XmlLoss loss, std::size_t offset,
                         std::string_view name);

// What editors write at the start of a file in UTF-8.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// What a line that a merge has left is called.
inline constexpr std::string_view kConflictDamage = "a merge conflict that was not resolved";
// Whether a line begins with a marker of a merge conflict.
bool IsConflictMark(std::string_view line);

// The number of line ends from `begin` to `end`; a pair of carriage return and line feed is one.
int CountLineEnds(std::string_view text, std::size_t begin, std::size_t end);

bool HoldsElements(const CXmlNode& node);

// Whether elements without children may have text in a file.
enum class XmlTexts : std::uint8_t { None, InElements };

// Loads a text that must not lose anything. Returns its first fault as "FILE:LINE: what", or an
// empty string if there is none; the node has what could be read. Comments, processing instructions
// and a byte order mark are no faults. A line that begins with a marker of a merge conflict is one
// wherever it is, also in a comment.
std::string LoadWhole(CXmlNode& node, const std::string& text, XmlTexts texts,
                      std::string_view file);

}  // namespace tarn
