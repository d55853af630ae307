#pragma once

#include <string>

#include "patterns/RegularExpression.h"

namespace tarn {

// Severity of a line of tool output.
enum class LineKind { Plain, Error, Warning };

// Parsed line of tool output.
struct Diagnostic {
  LineKind kind = LineKind::Plain;
  std::string file;  // as written by the tool, or empty
  std::string line;  // digits, or empty
  std::string help;  // name of a help page, or empty
  std::string message;
};

// Groups of a pattern that contain the fields of a line; -1 for a field that the pattern doesn't
// have.
struct DiagnosticFields {
  int file = -1;
  int line = -1;
  int message = -1;
  int help = -1;
  int type = -1;
};

// Pattern of a diagnostic. Belongs to one thread.
class DiagnosticPattern {
 public:
  DiagnosticPattern(const std::string& pattern, const DiagnosticFields& groups);

  bool IsCompiled() const { return expression_.IsCompiled(); }
  // Compile error of the pattern; empty if it compiled.
  const std::string& GetError() const { return expression_.GetError(); }

  // Parses `text` into `found` if it matches; otherwise returns false and leaves `found` unchanged.
  //
  // The kind is determined by the word "error" or else "warning" in the type or, if the pattern has
  // no type, in the message. In the name of the help page, spaces at both ends and every # are
  // removed, and inner spaces become _.
  bool Match(const std::string& text, Diagnostic& found);

 private:
  CRegularExpression expression_;
  DiagnosticFields fields_;
};

}  // namespace tarn
