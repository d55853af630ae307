#pragma once

#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn::host {

enum class Paint { Plain, Bold, Dim, Red, Yellow, Green, Cyan };

// What can be done with an output.
struct ConsoleStyle {
  bool redraws = false;  // a terminal that can take a line back
  bool color = false;
  std::function<int()> width;  // columns; asked at each drawing, since windows change

  // Of the standard output of this process. Colour needs a terminal and no NO_COLOR.
  static ConsoleStyle OfStandardOutput(bool noColor);
};

// A line for the console. Text of any origin becomes part of it in a form that does nothing to a
// terminal (see Printable); only Console::Dye adds sequences that do.
class ConsoleText {
 public:
  ConsoleText(std::string_view plain);
  ConsoleText(const std::string& plain) : ConsoleText(std::string_view(plain)) {}
  ConsoleText(const char* plain) : ConsoleText(std::string_view(plain)) {}

  ConsoleText& operator+=(const ConsoleText& more) {
    bytes += more.bytes;
    return *this;
  }
  friend ConsoleText operator+(ConsoleText left, const ConsoleText& right) { return left += right; }

  // As the terminal gets it.
  const std::string& GetBytes() const { return bytes; }

 private:
  friend class Console;

  std::string bytes;
};

// The formats of what programs read, each of which has its own way to write a character.
enum class DocumentFormat { Lines, Json, Xml };

// All that the program writes to its user: lines on the output, with one progress line below them
// that is drawn again and again, and complaints on the error stream. Whatever a project, an option
// or a tool contains, no control character of it reaches either stream, also if that is no
// terminal.
class Console {
 public:
  // The streams are borrowed.
  Console(std::ostream& stream, ConsoleStyle consoleStyle, std::ostream& errorStream = std::cerr);

  void SetStyle(ConsoleStyle consoleStyle) { style = std::move(consoleStyle); }

  // A whole line, above the progress line.
  void PrintLine(const ConsoleText& text);
  // A document with a line end after it. It keeps its meaning.
  void PrintDocument(std::string_view text, DocumentFormat format);
  // A line on the error stream that names the program, and further ones below it. A line end within
  // one of them is part of a name, and shown like other control characters.
  void Complain(std::string_view text, const std::vector<std::string>& more = {});
  // A line there without the name.
  void PrintError(std::string_view text);
  // Like Complain, and the cursor stays behind the question.
  void ShowQuestion(std::string_view text);
  // Replaces the progress line; does nothing where lines can't be taken back.
  void ShowProgress(std::string_view text);
  void ClearProgress();

  // The text in a colour, where there are colours.
  ConsoleText Dye(Paint paint, std::string_view text) const;
  // A whole line was printed.
  bool HasPrinted() const { return hasPrinted; }
  bool Redraws() const { return style.redraws; }
  // Error number of the first write to the output that failed; 0 if none has.
  int GetFailure() const { return failure; }

 private:
  void Write(std::string_view bytes);

  std::ostream& out;
  std::ostream& errors;
  ConsoleStyle style;
  std::string progress;
  bool hasPrinted = false;
  int failure = 0;
};

}  // namespace tarn::host
