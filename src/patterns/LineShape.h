#pragma once

#include <string>

#include "patterns/RegularExpression.h"

namespace tarn {

// What a line of a tool announces.
enum class LineKind { Plain, Error, Warning };

// A line of a tool, taken apart.
struct ToolLine {
  LineKind kind = LineKind::Plain;
  std::string file;  // as the tool wrote it, or empty
  std::string line;  // digits, or empty
  std::string help;  // the name of a page of help, or empty
  std::string message;
};

// The groups of a pattern in which the parts of a line stand; -1 for a part that it doesn't have.
struct LineFields {
  int file = -1;
  int line = -1;
  int message = -1;
  int help = -1;
  int type = -1;
};

// A shape that lines of tools have. Belongs to one thread.
class LineShape {
 public:
  LineShape(const std::string& pattern, const LineFields& groups);

  bool IsCompiled() const { return expression.IsCompiled(); }
  // Why not.
  const std::string& GetError() const { return expression.GetError(); }

  // Takes `text` apart when it has this shape; otherwise leaves `found` alone and gives false.
  //
  // The word "error" or else "warning", in the type or, without one, in the message, makes the
  // kind. Of the help's name blanks at both ends and each # go, and a blank inside becomes _.
  bool Recognise(const std::string& text, ToolLine& found);

 private:
  CRegularExpression expression;
  LineFields fields;
};

}  // namespace tarn
