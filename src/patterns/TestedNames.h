#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// A token of a preprocessor line.
struct MacroToken {
  std::string text;
  bool hasSpace = false;            // before it
  std::vector<std::string> hidden;  // macros that it must not name again: it came from them
};

struct MacroDefinition {
  std::string name;
  bool isFunction = false;
  std::vector<std::string> parameters;
  std::vector<MacroToken> body;
};

// Definitions of macros and conditions in one source, in C, C++ or preprocessed assembler.
struct MacroScan {
  std::vector<MacroDefinition> definitions;
  std::vector<std::vector<MacroToken>> conditions;  // after "#if" and "#elif"
};

// "__has_include" and its relatives.
bool IsFileTest(std::string_view word);

// Returns whether the text tests for a file (by a word that IsFileTest knows) whose name isn't
// written there, or defines a macro that does. Costs one search of the text if it has no test.
bool HasComputedTest(std::string_view text);

MacroScan ScanMacros(std::string_view text);

struct TestedNames {
  std::vector<std::string> names;  // each once
  // The list lacks names: one is made from what only the compiler defines, or too many are
  // possible.
  bool isIncomplete = false;
};

// Finds the names that macros yield in tests for files, by expanding the macros of all sources.
//
// Which definition of a macro is in force at a condition isn't known, so each counts, and so does
// the state without one: what is tested is among the names, and they may be more. Expansion follows
// the standard's algorithm with a set of hidden names for each token; its cost is bounded.
TestedNames FindTestedNames(std::span<const MacroScan* const> sources);

}  // namespace tarn
