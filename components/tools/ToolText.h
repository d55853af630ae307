#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarn::tools {

// Removes terminal control sequences. Of an unterminated sequence, only the introducer and the
// parameters are removed.
std::string StripAnsi(std::string_view line);

// Prepares a line for the log: removes control sequences, replaces tabs with spaces and other
// control bytes with dots, and trims the end. Keeps leading whitespace, because carets mark
// columns.
std::string CleanLine(std::string_view line);

// Splits the chunks of a stream into lines. Stores up to kMaxLine bytes per line; the rest is
// counted and reported at the end of the line, so that memory is bounded however much a tool
// prints.
class LineAssembler {
 public:
  static constexpr std::size_t kMaxLine = 8192;

  // Calls `onLine(std::string_view)` for every line completed by `chunk`, without its line ending.
  template <class Handler>
  void Add(std::string_view chunk, const Handler& onLine) {
    while (!chunk.empty()) {
      const std::size_t end = chunk.find('\n');
      Append(chunk.substr(0, end));
      if (end == std::string_view::npos) return;
      Flush(onLine);
      chunk.remove_prefix(end + 1);
    }
  }

  // Handles the end of the stream: the rest is a line too, unless it is empty.
  template <class Handler>
  void Finish(const Handler& onLine) {
    if (!line_.empty() || dropped_ > 0) Flush(onLine);
  }

 private:
  template <class Handler>
  void Flush(const Handler& onLine) {
    if (dropped_ > 0) line_ += " [" + std::to_string(dropped_) + " more bytes]";
    onLine(std::string_view(line_));
    line_.clear();
    dropped_ = 0;
  }

  void Append(std::string_view text);

  std::string line_;
  std::size_t dropped_ = 0;
};

}  // namespace tarn::tools
