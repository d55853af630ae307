#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarn::tools {

// The line without terminal control sequences. A sequence that never ends loses only its
// introducer and parameters; what follows is kept.
std::string StripAnsi(std::string_view line);

// The line as a log can show it: no control sequences, tabs as blanks, other control bytes as
// dots, no blanks or line ends behind the text. Leading blanks stay: carets point at columns.
std::string CleanLine(std::string_view line);

// Turns the pieces of one stream into lines. A line is kept up to kMaxLine bytes; of a longer one
// the rest is counted and told at its end, so that memory stays bounded whatever a tool prints.
class LineAssembler {
 public:
  static constexpr std::size_t kMaxLine = 8192;

  // Calls `onLine(std::string_view)` for every line that `piece` completes, without its line end.
  template <class Handler>
  void Add(std::string_view piece, const Handler& onLine) {
    while (!piece.empty()) {
      const std::size_t end = piece.find('\n');
      Append(piece.substr(0, end));
      if (end == std::string_view::npos) return;
      Flush(onLine);
      piece.remove_prefix(end + 1);
    }
  }

  // The end of the stream: what is left is a line too, unless it is empty.
  template <class Handler>
  void Finish(const Handler& onLine) {
    if (!line.empty() || dropped > 0) Flush(onLine);
  }

 private:
  template <class Handler>
  void Flush(const Handler& onLine) {
    if (dropped > 0) line += " [" + std::to_string(dropped) + " more bytes]";
    onLine(std::string_view(line));
    line.clear();
    dropped = 0;
  }

  void Append(std::string_view text);

  std::string line;
  std::size_t dropped = 0;
};

}  // namespace tarn::tools
