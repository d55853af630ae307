#include <array>

#include "components/tools/LineShapes.h"
#include "components/tools/Scanners.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

// Lines of the GNU linker. It says neither "error" nor where in a fixed shape; an object, a source
// line or a section offset may stand in front of what it complains about:
//
//   /usr/bin/ld: cannot find -lm
//   main.c:12: undefined reference to `x'
//   main.c:(.text+0x20): undefined reference to `x'
//   main.o: In function `main':
namespace tarn::tools {

namespace {

constexpr std::array<std::string_view, 14> kComplaints{
    "undefined reference to",
    "multiple definition of",
    "cannot find ",
    "cannot open ",
    "relocation truncated to fit",
    "will not fit in region",
    "overflowed by ",
    "overlaps section",
    "file not recognized",
    "file format not recognized",
    "final link failed",
    "not enough room for program headers",
    "syntax error",
    "is incompatible with",
};

// "ld: " with a path or a machine in front of it and a flavour such as ".bfd" behind.
std::string_view WithoutProgram(std::string_view line, bool& isLinker) {
  const std::size_t colon = line.find(": ");
  if (colon == std::string_view::npos) return line;
  const std::string name = FileNameOf(line.substr(0, colon));
  const std::string_view title = std::string_view(name).substr(0, name.find('.'));
  isLinker = title == "ld" || EndsWithNoCase(title, "-ld");
  return isLinker ? line.substr(colon + 2) : line;
}

// "main.c:(.text+0x20): rest".
std::optional<LocatedLine> FindSectionOffset(std::string_view text) {
  const std::size_t open = text.find(":(");
  if (open == std::string_view::npos || open == 0) return std::nullopt;
  const std::size_t close = text.find("): ", open);
  if (close == std::string_view::npos) return std::nullopt;
  return LocatedLine{text.substr(0, open), {}, text.substr(close + 3)};
}

bool IsComplaint(std::string_view text) {
  for (const std::string_view complaint : kComplaints) {
    if (Contains(text, complaint)) return true;
  }
  return false;
}

class LinkerFamily : public MessageScanner {
 public:
  bool Scan(std::string_view line, ToolMessage& message) const override {
    if (line.empty() || line.front() == ' ') return false;
    bool isLinker = false;
    std::string_view rest = WithoutProgram(line, isLinker);
    auto place = FindSectionOffset(rest);
    if (!place) place = FindLocation(rest);
    if (place) rest = place->rest;
    const auto severity = JudgeText(rest, isLinker || place);
    if (!severity && !place) return false;
    if (place) SetPlace(message, place->file, place->line);
    if (severity) SetJudgement(message, {*severity, rest});
    return true;
  }

 private:
  static std::optional<Severity> JudgeText(std::string_view text, bool isKnownSpeaker) {
    // "first defined here" ends a line whose complaint comes first, or stands alone as a note.
    if (text.substr(0, 19) == "first defined here") return std::nullopt;
    if (const auto judgement = Judge(text)) return judgement->severity;
    if (isKnownSpeaker && Contains(text, "warning: ")) return Severity::Warning;
    if (Contains(text, "skipping incompatible")) return std::nullopt;
    if (IsComplaint(text) && (isKnownSpeaker || Contains(text, ": "))) return Severity::Error;
    return std::nullopt;
  }
};

}  // namespace

const MessageScanner& LinkerScanner() {
  static const LinkerFamily scanner;
  return scanner;
}

}  // namespace tarn::tools
