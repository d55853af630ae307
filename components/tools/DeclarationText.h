#pragma once

#include <elfutils/libdw.h>

#include <optional>
#include <string>

namespace tarn::tools {

// Writes what an entry of debug information declares as a C or C++ source would. One object for
// each text. Types that are too large, or go in circles in damaged debug information, end in "...".
class DeclarationText {
 public:
  // In C the names of structures and the like have their keyword in front.
  explicit DeclarationText(bool isForC) : isC(isForC) {}

  std::string OfFunction(Dwarf_Die& function, const std::string& name);
  std::string OfVariable(Dwarf_Die& variable, const std::string& name);
  // A typedef, or a structure, class, union or enumeration with what is in it.
  std::string OfType(Dwarf_Die& type, const std::string& name);

 private:
  std::string Declare(std::optional<Dwarf_Die> type, const std::string& inner);
  std::string Point(Dwarf_Die& pointer, const std::string& inner);
  std::string Qualify(Dwarf_Die& qualified, const char* word, const std::string& inner);
  std::string Parameters(Dwarf_Die& function);
  std::string Member(Dwarf_Die& member);
  std::string Body(Dwarf_Die& type);

  const bool isC;
  int visited = 0;  // types so far
};

}  // namespace tarn::tools
