#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarn::host {

// A function that is defined at the top level of a source.
struct FoundFunction {
  std::string name;
  std::string prototype;  // without default arguments and the semicolon; empty if it has no type
  std::size_t start = 0;  // of its declaration in the text
  // The directives #if, #ifdef, #else ... that enclose it, outermost first.
  std::vector<std::string> conditions;
  std::size_t outermost = 0;  // start of the first of them, or of the declaration
};

struct ScannedSource {
  std::vector<FoundFunction> functions;
  std::vector<std::string> includes;  // names in #include directives
};

// Reads C or C++ without preprocessing: comments, literals and the bodies of functions, classes and
// namespaces are skipped.
ScannedSource ScanSource(const std::string& text);

}  // namespace tarn::host
