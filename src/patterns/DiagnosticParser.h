#pragma once

#include <array>
#include <string>
#include <vector>

#include "patterns/DiagnosticPattern.h"

namespace tarn {

// Path with a drive: the drive letter, a colon, and one or more segments that begin with a
// separator. Has four groups: the path, the drive letter, the last segment, the last separator.
inline constexpr const char* kPathPattern = R"((([a-zA-Z]):((\\|\/)[^\\\/\:\*\?\"\<\>]*)+))";

// Pattern of a diagnostic and the groups of its fields.
struct BuiltInPattern {
  const char* pattern;
  DiagnosticFields fields;
};

// Built-in patterns of diagnostics, in the order in which they are tried.
inline constexpr std::array<BuiltInPattern, 3> kBuiltInPatterns{{
    {R"(^\*\*\* (DOS ERROR|FATAL ERROR|ERROR|WARNING) *(.*) IN LINE *([0-9]*) OF *(.*) : *(.*)$)",
     {.file = 4, .line = 3, .message = 5, .help = 2, .type = 1}},
    {R"(^\*\*\* (DOS ERROR|FATAL ERROR|ERROR|WARNING) *(.*) : *(.*)$)",
     {.message = 3, .help = 2, .type = 1}},
    {R"((([a-zA-Z]):((\\|\/)[^\\\/\:\*\?\"\<\>]*)+):([0-9]*):(.*))",
     {.file = 1, .line = 5, .message = 6}},
}};

// Parses diagnostics from the output of any tool. The patterns are compiled once and reused for all
// lines; belongs to one thread.
class DiagnosticParser {
 public:
  DiagnosticParser();

  // Parses `line` by the first pattern that matches: `special`, if it isn't null, then the built-in
  // ones. If no file was found, but the line has a path and a word such as "error", that path
  // becomes the file. A line that matches no pattern is plain, and its message is the line itself.
  Diagnostic Parse(const std::string& line, DiagnosticPattern* special = nullptr);

 private:
  std::vector<DiagnosticPattern> patterns_;
  CRegularExpression path_{kPathPattern};
};

}  // namespace tarn
