#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <string_view>

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

// Lines for the user, with one progress line below them that is drawn again and again.
class Console {
 public:
  Console(std::ostream& stream, ConsoleStyle consoleStyle);

  // A whole line, above the progress line.
  void PrintLine(std::string_view text);
  // Replaces the progress line; does nothing where lines can't be taken back.
  void ShowProgress(std::string_view text);
  void ClearProgress();

  // The text in a colour, where there are colours.
  std::string Dye(Paint paint, std::string_view text) const;
  // A whole line was printed.
  bool HasPrinted() const { return hasPrinted; }
  bool Redraws() const { return style.redraws; }

 private:
  std::ostream& out;
  ConsoleStyle style;
  std::string progress;
  bool hasPrinted = false;
};

}  // namespace tarn::host
