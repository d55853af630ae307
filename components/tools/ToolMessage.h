#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarn::tools {

// Severity of a line; the value is the message's kind in the log.
enum class Severity { Plain, Error, Warning, Heading };

// One line of a tool's output, or one line of this component about a tool.
struct ToolMessage {
  Severity severity = Severity::Plain;
  std::string text;         // the line as displayed
  std::string content;      // for errors and warnings: the message without file and line
  std::string file;         // absolute, or empty
  std::string line;         // decimal, or empty
  bool isReported = false;  // a plain line that also appears in the report
  std::size_t count = 1;    // number of errors or warnings that this one represents
  bool failsStep = false;   // an error that fails the step regardless of its exit code
};

// Messages in the order of output.
using ToolMessages = std::vector<ToolMessage>;

}  // namespace tarn::tools
