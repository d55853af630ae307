#include "hosts/cli/MonitorText.h"

#include "hosts/core/Printable.h"

namespace tarn::host {

namespace {

constexpr std::size_t kBytesInLine = 16;

}  // namespace

void MonitorText::BeginLine(std::string& text) {
  if (column_ == 0 && timeStamp_) text += timeStamp_() + " ";
}

std::string MonitorText::Add(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  incomplete_ += bytes;
  const std::size_t length = isHex_ ? incomplete_.size() : WholeCharacters(incomplete_);
  const std::string whole = incomplete_.substr(0, length);
  incomplete_.erase(0, length);
  for (const char c : whole) {
    if (!isHex_) {
      if (c == '\r') continue;
      if (c != '\n') BeginLine(text);
      text += c;
      column_ = c == '\n' ? 0 : column_ + 1;
      continue;
    }
    BeginLine(text);
    const auto byte = static_cast<unsigned char>(c);
    text += {kDigits[byte >> 4], kDigits[byte & 15], ' '};
    shown_ += byte >= 0x20 && byte < 0x7f ? c : '.';
    if (++column_ == kBytesInLine) text += Finish();
  }
  return text;
}

std::string MonitorText::Finish() {
  if (column_ == 0 && incomplete_.empty()) return {};
  std::string text =
      isHex_ ? std::string(3 * (kBytesInLine - column_) + 1, ' ') + shown_ : incomplete_;
  incomplete_.clear();
  shown_.clear();
  column_ = 0;
  return text + '\n';
}

std::string ToLineEnds(std::string_view typed, std::string_view lineEnd) {
  std::string bytes;
  for (const char c : typed) {
    if (c == '\n') {
      bytes += lineEnd;
    } else {
      bytes += c;
    }
  }
  return bytes;
}

}  // namespace tarn::host
