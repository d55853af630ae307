#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Token of a preprocessor line.
struct MacroToken {
  std::string text;
  bool hasSpace = false;            // before the token
  std::vector<std::string> hidden;  // hide set: macros that must not expand this token
};

struct MacroDefinition {
  std::string name;
  bool isFunction = false;
  std::vector<std::string> parameters;
  std::vector<MacroToken> body;
};

// Macro definitions and conditions in one source, in C, C++ or preprocessed assembler.
struct MacroScan {
  std::vector<MacroDefinition> definitions;
  std::vector<std::vector<MacroToken>> conditions;  // after "#if" and "#elif"
};

// Returns true for "__has_include" and related operators.
bool IsFileTest(std::string_view word);

// Returns true if the source tests for a file (see `IsFileTest()`) whose name isn't a literal
// there, or defines a macro that does. Costs one search of the string if it has no test.
bool HasComputedTest(std::string_view text);

MacroScan ScanMacros(std::string_view text);

struct TestedNames {
  std::vector<std::string> names;  // without duplicates
  // Some names are missing: one depends on a macro that only the compiler defines, or there are
  // too many combinations.
  bool isIncomplete = false;
};

// Finds the names that result from macros in tests for files, by expanding the macros of all
// sources.
//
// Which definition of a macro is effective at a condition isn't known, so each is tried, as is the
// undefined state: the result contains every name that is tested, and may contain more. Expansion
// follows the standard's algorithm with a hide set for each token; its cost is bounded.
TestedNames FindTestedNames(std::span<const MacroScan* const> sources);

}  // namespace tarn
