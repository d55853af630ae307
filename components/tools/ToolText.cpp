#include "components/tools/ToolText.h"

#include <algorithm>

namespace tarn::tools {

namespace {

constexpr char kEscape = '\x1b';
constexpr char kBell = '\x07';

bool InRange(char c, unsigned char first, unsigned char last) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= first && byte <= last;
}

// Returns the end of a control sequence after its "[": parameters, intermediates, one final byte.
std::size_t EndOfControl(std::string_view text, std::size_t at) {
  while (at < text.size() && InRange(text[at], 0x30, 0x3f)) ++at;
  while (at < text.size() && InRange(text[at], 0x20, 0x2f)) ++at;
  return at < text.size() && InRange(text[at], 0x40, 0x7e) ? at + 1 : at;
}

// Returns the end of an OSC command, such as a hyperlink, after its "]"; it is terminated by BEL or
// ESC \. Without a terminator only the introducer is skipped, or a single stray byte would remove
// the rest of the line.
std::size_t EndOfCommand(std::string_view text, std::size_t at) {
  for (std::size_t i = at; i < text.size(); ++i) {
    if (text[i] == kBell) return i + 1;
    if (text[i] == kEscape) return i + 1 < text.size() && text[i + 1] == '\\' ? i + 2 : at;
  }
  return at;
}

std::size_t EndOfSequence(std::string_view text, std::size_t escape) {
  std::size_t at = escape + 1;
  if (at == text.size()) return at;
  if (text[at] == '[') return EndOfControl(text, at + 1);
  if (text[at] == ']') return EndOfCommand(text, at + 1);
  while (at < text.size() && InRange(text[at], 0x20, 0x2f)) ++at;
  return at < text.size() && InRange(text[at], 0x30, 0x7e) ? at + 1 : at;
}

}  // namespace

std::string StripAnsi(std::string_view line) {
  std::string plain;
  plain.reserve(line.size());
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t escape = std::min(line.find(kEscape, at), line.size());
    plain.append(line.substr(at, escape - at));
    at = escape == line.size() ? escape : EndOfSequence(line, escape);
  }
  return plain;
}

std::string CleanLine(std::string_view line) {
  std::string clean = StripAnsi(line);
  for (char& c : clean) {
    if (c == '\t' || c == '\r') c = ' ';
    if (InRange(c, 0, 0x1f) || c == '\x7f') c = '.';
  }
  clean.erase(clean.find_last_not_of(' ') + 1);
  return clean;
}

void LineAssembler::Append(std::string_view text) {
  const std::size_t taken = std::min(text.size(), kMaxLine - std::min(kMaxLine, line_.size()));
  line_.append(text.substr(0, taken));
  dropped_ += text.size() - taken;
}

}  // namespace tarn::tools
