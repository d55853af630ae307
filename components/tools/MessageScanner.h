#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/tools/ToolMessage.h"

namespace tarn::tools {

// Recognises the lines of one family of tools. Without state: a line is judged by itself.
class MessageScanner {
 public:
  virtual ~MessageScanner() = default;
  // Fills severity, content, file (as the tool wrote it) and line of `message` when the line has a
  // shape of this family; `line` is clean. Otherwise leaves `message` alone and gives false.
  virtual bool Scan(std::string_view line, ToolMessage& message) const = 0;
};

// The built-in scanner of that name, or null. The names: gcc (compilers and the assembler behind
// them), gnu-ld, sdcc (its compiler, preprocessor, assembler and linker).
const MessageScanner* FindScanner(std::string_view name);

// The scanners of one tool, in the order in which its definition names them.
class MessageRecogniser {
 public:
  void Add(const MessageScanner& scanner) { scanners.push_back(&scanner); }
  // The message of a clean line. The first scanner that sees an error or a warning decides, else
  // the first that sees a place. File names are made absolute against `folder`.
  ToolMessage Recognise(std::string_view line, const std::string& folder) const;

 private:
  std::vector<const MessageScanner*> scanners;
};

}  // namespace tarn::tools
