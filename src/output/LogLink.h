#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "xml/XmlNode.h"

// What a link of the log stands for, as the text that it carries: a row of fields, each a name with
// its value in angle brackets. Blanks of paths travel as question marks, since a blank would end
// the address, and no value can hold a ">".
namespace tarn {

struct LogLink {
  std::optional<std::string> help;
  std::optional<std::string> file;
  std::int32_t line = 0;  // 0 for none
  std::int32_t timeLow = 0;
  std::int32_t timeHigh = 0;
};

// Every field that the message has something for. Backslashes of paths are doubled, as rich text
// wants them.
std::string MakeLinkTarget(const CXmlNode& message);
// The file and the line.
std::string MakePlaceTarget(const CXmlNode& message);
// The file alone.
std::string MakeFileTarget(const CXmlNode& message);

// Takes the target of a link as rich text gives it back, with single backslashes. A field is what
// stands between the first mark of its name and the next ">", or the end.
LogLink ReadLinkTarget(std::string_view target);

}  // namespace tarn
