#pragma once

#include <array>
#include <string>
#include <vector>

#include "patterns/LineShape.h"

namespace tarn {

// A drive, a colon, and one or more segments that begin with a separator. Opens four groups: the
// path, the drive's letter, the last segment, the last separator.
inline constexpr const char* kPathPattern = R"((([a-zA-Z]):((\\|\/)[^\\\/\:\*\?\"\<\>]*)+))";

struct LineRow {
  const char* pattern;
  LineFields fields;
};

// The shapes that are known without a template, in the order in which they are tried.
inline constexpr std::array<LineRow, 3> kLineRows{{
    {R"(^\*\*\* (DOS ERROR|FATAL ERROR|ERROR|WARNING) *(.*) IN LINE *([0-9]*) OF *(.*) : *(.*)$)",
     {.file = 4, .line = 3, .message = 5, .help = 2, .type = 1}},
    {R"(^\*\*\* (DOS ERROR|FATAL ERROR|ERROR|WARNING) *(.*) : *(.*)$)",
     {.message = 3, .help = 2, .type = 1}},
    {R"((([a-zA-Z]):((\\|\/)[^\\\/\:\*\?\"\<\>]*)+):([0-9]*):(.*))",
     {.file = 1, .line = 5, .message = 6}},
}};

// Recognises the lines of any tool. The patterns are compiled once for all lines; belongs to one
// thread.
class LineRecogniser {
 public:
  LineRecogniser();

  // The line taken apart after the first shape that it has: `special`, if it isn't null, then the
  // known ones. A line that names no file but a path beside a word such as "error" gets that path
  // as its file. A line of no shape is plain, and its own message.
  ToolLine Recognise(const std::string& line, LineShape* special = nullptr);

 private:
  std::vector<LineShape> shapes;
  CRegularExpression path{kPathPattern};
};

}  // namespace tarn
