#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarn::tools {

// How much a line of a tool matters; the number is the message's kind in the log.
enum class Severity { Plain, Error, Warning, Heading };

// One line of a tool's output, or one line of this component about a tool.
struct ToolMessage {
  Severity severity = Severity::Plain;
  std::string text;         // the line as it is shown
  std::string content;      // the bare message, for errors and warnings
  std::string file;         // absolute, or empty
  std::string line;         // decimal, or empty
  bool isReported = false;  // a plain line that the report shows too
  std::size_t count = 1;    // of errors or warnings that this one stands for
  bool failsStep = false;   // an error after which the step has failed, whatever its exit code
};

using ToolMessages = std::vector<ToolMessage>;

}  // namespace tarn::tools
