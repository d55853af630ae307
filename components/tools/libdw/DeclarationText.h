#pragma once

#include <elfutils/libdw.h>

#include <optional>
#include <string>

namespace tarn::tools {

// Renders the declaration of a debug information entry as C or C++ source. Recurses from the
// declared name outwards, as declarators require. Create one instance per declaration. Types that
// are too large, or recursive because the debug information is damaged, end in "...".
class DeclarationText {
 public:
  // In C, names of structures, unions and enumerations are preceded by their keyword.
  explicit DeclarationText(bool isForC) : isC_(isForC) {}

  std::string OfFunction(Dwarf_Die& function, const std::string& name);
  std::string OfVariable(Dwarf_Die& variable, const std::string& name);
  // A typedef, or a structure, class, union or enumeration with its members.
  std::string OfType(Dwarf_Die& type, const std::string& name);

 private:
  std::string Declare(std::optional<Dwarf_Die> type, const std::string& inner);
  std::string Point(Dwarf_Die& pointer, const std::string& inner);
  std::string Qualify(Dwarf_Die& qualified, const char* word, const std::string& inner);
  std::string Parameters(Dwarf_Die& function);
  std::string Member(Dwarf_Die& member);
  std::string Body(Dwarf_Die& type);

  const bool isC_;
  int visited_ = 0;  // number of types visited
};

}  // namespace tarn::tools
