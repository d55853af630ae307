#include <array>

#include "components/tools/LineShapes.h"
#include "components/tools/Scanners.h"
#include "platform/text/Text.h"

// Lines of gcc, its preprocessor and the GNU assembler:
//
//   a.c:3:21: warning: text          a place and a word
//   s.S:2: Error: text               the assembler's capitals
//   avr-gcc: error: text             a program and a word, no place
//   In file included from d.h:1:0,   a place in the chain above an error; plain
//   a.c: In function 'main':         a file and no line; plain
//
// What starts with a blank is a source line or a caret and is never searched.
namespace tarn::tools {

namespace {

constexpr std::array<std::string_view, 3> kChainStarts{
    "In file included from ", "                 from ", "In module imported at "};
constexpr std::array<std::string_view, 3> kContexts{": In ", ": At ", ": Assembler messages"};

class GccFamily : public MessageScanner {
 public:
  bool Scan(std::string_view line, ToolMessage& message) const override {
    if (ScanChain(line, message)) return true;
    if (line.empty() || line.front() == ' ') return false;
    return ScanPlace(line, message) || ScanProgram(line, message) || ScanContext(line, message);
  }

 private:
  static bool ScanChain(std::string_view line, ToolMessage& message) {
    for (const std::string_view start : kChainStarts) {
      if (line.substr(0, start.size()) != start) continue;
      std::string rest(line.substr(start.size()));
      // Each place but the last ends in a comma, and a column may be missing.
      if (!rest.empty() && rest.back() == ',') rest.back() = ':';
      const auto place = FindLocation(rest);
      if (place) SetPlace(message, place->file, place->line);
      return place.has_value();
    }
    return false;
  }

  static bool ScanPlace(std::string_view line, ToolMessage& message) {
    const auto place = FindLocation(line);
    if (!place) return false;
    SetPlace(message, place->file, place->line);
    if (const auto judgement = Judge(place->rest)) SetJudgement(message, *judgement);
    return true;
  }

  static bool ScanProgram(std::string_view line, ToolMessage& message) {
    const std::size_t colon = line.find(": ");
    if (colon == std::string_view::npos || colon == 0) return false;
    const auto judgement = Judge(line.substr(colon + 2));
    if (!judgement) return false;
    SetJudgement(message, *judgement);
    return true;
  }

  static bool ScanContext(std::string_view line, ToolMessage& message) {
    if (line.back() != ':') return false;
    for (const std::string_view context : kContexts) {
      const std::size_t at = line.find(context);
      if (at == std::string_view::npos || at == 0) continue;
      SetPlace(message, line.substr(0, at), {});
      return true;
    }
    return false;
  }
};

}  // namespace

const MessageScanner& GccScanner() {
  static const GccFamily scanner;
  return scanner;
}

}  // namespace tarn::tools
