#include <array>

#include "components/tools/LineShapes.h"
#include "components/tools/Scanners.h"
#include "platform/text/Text.h"

// Lines of sdcc and the programs behind it:
//
//   a.c:5: error 20: text             compiler, with the number of the message
//   g.c:1: syntax error: token -> '}' parser
//   at 1: warning 190: text           no file; the number is not a line of any
//   h.c:1:17: fatal error: text       preprocessor
//   sdcpp: error: text                a program and a word
//   s.asm:5: Error: <o> text          assembler
//   ?ASlink-Warning-text              linker
namespace tarn::tools {

namespace {

struct Opening {
  std::string_view text;
  Severity severity;
};

constexpr std::array<Opening, 6> kOpenings{{
    {"?ASlink-Warning-", Severity::Warning},
    {"?ASlink-Error-", Severity::Error},
    {"ASlink-Warning-", Severity::Warning},
    {"ASlink-Error-", Severity::Error},
    {"Multiple definition of ", Severity::Error},
    {"Internal error: ", Severity::Error},
}};

class SdccFamily : public MessageScanner {
 public:
  bool Scan(std::string_view line, ToolMessage& message) const override {
    if (line.empty() || line.front() == ' ') return false;
    return ScanOpening(line, message) || ScanNoFile(line, message) ||
           GccScanner().Scan(line, message);
  }

 private:
  static bool ScanOpening(std::string_view line, ToolMessage& message) {
    for (const Opening& opening : kOpenings) {
      if (line.substr(0, opening.text.size()) != opening.text) continue;
      const bool isLinker = opening.text.back() == '-';
      SetJudgement(message, {opening.severity, isLinker ? line.substr(opening.text.size()) : line});
      return true;
    }
    return false;
  }

  static bool ScanNoFile(std::string_view line, ToolMessage& message) {
    if (line.substr(0, 3) != "at ") return false;
    const std::size_t colon = line.find(": ");
    if (colon == std::string_view::npos) return false;
    const auto judgement = Judge(line.substr(colon + 2));
    if (judgement) SetJudgement(message, *judgement);
    return judgement.has_value();
  }
};

}  // namespace

const MessageScanner& SdccScanner() {
  static const SdccFamily scanner;
  return scanner;
}

}  // namespace tarn::tools
