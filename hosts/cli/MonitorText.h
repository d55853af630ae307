#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace tarn::host {

// Formats what a serial port receives: as text without carriage returns, or as lines of 16 bytes in
// hexadecimal, with the time at the beginning of each line if wanted.
class MonitorText {
 public:
  // `timeStamp` returns the text for the beginning of a line; empty: none.
  MonitorText(bool isHex, std::function<std::string()> timeStamp)
      : isHex_(isHex), timeStamp_(std::move(timeStamp)) {}

  std::string Add(std::string_view bytes);
  // Returns what completes the last line.
  std::string Finish();

 private:
  void BeginLine(std::string& text);

  bool isHex_;
  std::function<std::string()> timeStamp_;
  std::size_t column_ = 0;  // characters, or bytes in hexadecimal, in the current line
  std::string incomplete_;  // the first bytes of a character whose others have not arrived
  std::string shown_;       // the bytes of the current line in hexadecimal, as text
};

// Returns the bytes that the keys of the user send: each line end is replaced by `lineEnd`.
std::string ToLineEnds(std::string_view typed, std::string_view lineEnd);

}  // namespace tarn::host
