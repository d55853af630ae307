#include "hosts/cli/Console.h"

#include <cerrno>
#include <cstdlib>

#include "hosts/core/Printable.h"
#include "hosts/core/Terminal.h"

namespace tarn::host {

namespace {

constexpr std::string_view kEraseLine = "\r\033[K";
constexpr int kUsualWidth = 80;

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

std::string_view CodeOf(Paint paint) {
  switch (paint) {
    case Paint::Bold:
      return "\033[1m";
    case Paint::Dim:
      return "\033[2m";
    case Paint::Red:
      return "\033[1;31m";
    case Paint::Yellow:
      return "\033[1;33m";
    case Paint::Green:
      return "\033[1;32m";
    case Paint::Cyan:
      return "\033[1;36m";
    case Paint::Plain:
      break;
  }
  return {};
}

// Returns at most `columns` characters of the text, without splitting one.
std::string_view CutToWidth(std::string_view text, int columns) {
  int seen = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool startsCharacter = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
    if (startsCharacter && seen++ == columns) return text.substr(0, i);
  }
  return text;
}

}  // namespace

ConsoleStyle ConsoleStyle::OfStandardOutput(bool noColor) {
  ConsoleStyle style;
  const bool isTerminal = IsOutputTerminal();
  style.redraws = isTerminal && Environment("TERM") != "dumb";
  style.color = style.redraws && !noColor && Environment("NO_COLOR").empty();
  style.width = [] { return TerminalWidth().value_or(kUsualWidth); };
  return style;
}

ConsoleText::ConsoleText(std::string_view plain) : bytes_(Printable(plain)) {}

Console::Console(std::ostream& stream, ConsoleStyle consoleStyle, std::ostream& errorStream)
    : out_(stream), errors_(errorStream), style_(std::move(consoleStyle)) {}

void Console::Write(std::string_view bytes) {
  errno = 0;
  out_ << bytes << std::flush;
  if (!out_ && failure_ == 0) failure_ = errno != 0 ? errno : EIO;
}

void Console::PrintLine(const ConsoleText& text) {
  const std::string waiting = progress_;
  ClearProgress();
  Write(text.GetBytes() + '\n');
  hasPrinted_ = true;
  if (!waiting.empty()) ShowProgress(waiting);
}

void Console::PrintOutput(std::string_view text) {
  ClearProgress();
  Write(PrintableLines(text));
  hasPrinted_ = hasPrinted_ || !text.empty();
}

void Console::PrintDocument(std::string_view text, DocumentFormat format) {
  ClearProgress();
  const auto escape = format == DocumentFormat::Json  ? PrintableJson
                      : format == DocumentFormat::Xml ? PrintableXml
                                                      : PrintableLines;
  Write(escape(text) + '\n');
  hasPrinted_ = true;
}

void Console::Complain(std::string_view text, const std::vector<std::string>& more) {
  PrintError(std::string("tarn: ").append(text));
  for (const std::string& line : more) PrintError(line);
}

void Console::PrintError(std::string_view text) {
  ClearProgress();
  hasComplained_ = true;
  errors_ << Printable(text) << std::endl;
}

void Console::ShowQuestion(std::string_view text) {
  ClearProgress();
  hasComplained_ = true;
  errors_ << "tarn: " << Printable(text) << ' ' << std::flush;
}

void Console::ShowProgress(std::string_view text) {
  if (!style_.redraws) return;
  progress_ = Printable(text);
  // One column is left free, because some terminals wrap after the last one.
  const int columns = style_.width ? style_.width() - 1 : kUsualWidth;
  Write(std::string(kEraseLine).append(CutToWidth(progress_, columns)));
}

void Console::ClearProgress() {
  if (progress_.empty()) return;
  progress_.clear();
  Write(kEraseLine);
}

ConsoleText Console::Dye(Paint paint, std::string_view text) const {
  ConsoleText dyed(text);
  const std::string_view code = style_.color ? CodeOf(paint) : std::string_view();
  if (!code.empty()) dyed.bytes_.insert(0, code).append("\033[0m");
  return dyed;
}

}  // namespace tarn::host
