#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Target of a link in the log, encoded as a string: a sequence of fields, each a name followed by
// its value in angle brackets. Spaces in paths are encoded as question marks, since a space would
// end the address, and no value can contain a ">".
namespace tarn {

class CXmlNode;

struct LogLink {
  std::optional<std::string> help;
  std::optional<std::string> file;
  std::int32_t line = 0;  // 0 for none
  std::int32_t timeLow = 0;
  std::int32_t timeHigh = 0;
};

// Returns the target with every field for which the message has a value. Backslashes in paths are
// doubled, as required in rich text.
std::string MakeLinkTarget(const CXmlNode& message);
// Returns the target with file and line.
std::string MakePlaceTarget(const CXmlNode& message);
// Returns the target with the file only.
std::string MakeFileTarget(const CXmlNode& message);

// Parses the target of a link as returned by the rich text control, with single backslashes. The
// value of a field extends from the first occurrence of its name's marker to the next ">", or to
// the end.
LogLink ReadLinkTarget(std::string_view target);

}  // namespace tarn
