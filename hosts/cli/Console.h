#pragma once

#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn::host {

enum class Paint { Plain, Bold, Dim, Red, Yellow, Green, Cyan };

// Capabilities of an output.
struct ConsoleStyle {
  bool redraws = false;  // a terminal that can rewrite a line
  bool color = false;
  std::function<int()> width;  // columns; called on each redraw, because windows are resized

  // Returns the style for this process's standard output. Colour requires a terminal and no
  // NO_COLOR.
  static ConsoleStyle OfStandardOutput(bool noColor);
};

// A line for the console. Text from any source is converted to a form that is harmless to a
// terminal (see Printable); only Console::Dye adds escape sequences.
class ConsoleText {
 public:
  ConsoleText(std::string_view plain);
  ConsoleText(const std::string& plain) : ConsoleText(std::string_view(plain)) {}
  ConsoleText(const char* plain) : ConsoleText(std::string_view(plain)) {}

  ConsoleText& operator+=(const ConsoleText& more) {
    bytes_ += more.bytes_;
    return *this;
  }
  friend ConsoleText operator+(ConsoleText left, const ConsoleText& right) { return left += right; }

  // The bytes for the terminal.
  const std::string& GetBytes() const { return bytes_; }

 private:
  friend class Console;

  std::string bytes_;
};

// Format of machine-readable output; determines how a character is escaped.
enum class DocumentFormat { Lines, Json, Xml };

// All output to the user: lines on the output stream, with one progress line below them that is
// redrawn, and errors on the error stream. Control characters from projects, options or tools never
// reach either stream, even if it is not a terminal.
class Console {
 public:
  // The streams are borrowed.
  Console(std::ostream& stream, ConsoleStyle consoleStyle, std::ostream& errorStream = std::cerr);

  void SetStyle(ConsoleStyle consoleStyle) { style_ = std::move(consoleStyle); }

  // Prints a whole line above the progress line.
  void PrintLine(const ConsoleText& text);
  // Prints lines of a program as they are, without a further line end.
  void PrintOutput(std::string_view text);
  // Prints a document and a line end. Control characters are escaped without changing its meaning.
  void PrintDocument(std::string_view text, DocumentFormat format);
  // Prints a line with the program's name on the error stream, and the lines of `more` below it. A
  // line end inside one of them can only be part of a name, so it is escaped like other control
  // characters.
  void Complain(std::string_view text, const std::vector<std::string>& more = {});
  // Prints a line on the error stream without the name.
  void PrintError(std::string_view text);
  // Like Complain(), but leaves the cursor after the question.
  void ShowQuestion(std::string_view text);
  // Replaces the progress line; no-op if the output can't redraw lines.
  void ShowProgress(std::string_view text);
  void ClearProgress();

  // Returns the text in a colour if the output supports colours.
  ConsoleText Dye(Paint paint, std::string_view text) const;
  // True if a whole line was printed.
  bool HasPrinted() const { return hasPrinted_; }
  // True if a line was printed on the error stream.
  bool HasComplained() const { return hasComplained_; }
  bool Redraws() const { return style_.redraws; }
  // Error number of the first failed write to the output; 0 if there was none.
  int GetFailure() const { return failure_; }

 private:
  void Write(std::string_view bytes);

  std::ostream& out_;
  std::ostream& errors_;
  ConsoleStyle style_;
  std::string progress_;
  bool hasPrinted_ = false;
  bool hasComplained_ = false;
  int failure_ = 0;
};

}  // namespace tarn::host
