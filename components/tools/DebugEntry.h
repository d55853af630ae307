#pragma once

#include <dwarf.h>
#include <elfutils/libdw.h>

#include <optional>
#include <string>

#include "platform/text/Text.h"

// Questions to the entries of debug information. Entries are small handles; the data behind them
// belongs to the opened program.
namespace tarn::tools {

// Calls `visit` for each child. False when the debug information is damaged: children that don't
// go forward would never end.
template <typename Visit>
bool ForEachChild(Dwarf_Die& parent, const Visit& visit) {
  Dwarf_Die child;
  int answer = dwarf_child(&parent, &child);
  while (answer == 0) {
    visit(child);
    Dwarf_Die next;
    answer = dwarf_siblingof(&child, &next);
    if (answer == 0 && dwarf_dieoffset(&next) <= dwarf_dieoffset(&child)) return false;
    child = next;
  }
  return answer > 0;
}

inline bool HasAttribute(Dwarf_Die& entry, unsigned name) {
  return dwarf_hasattr(&entry, name) != 0;
}

// Also when the entry has the flag from the declaration that it completes.
inline bool HasFlag(Dwarf_Die& entry, unsigned name) {
  Dwarf_Attribute attribute;
  bool isSet = false;
  return dwarf_attr_integrate(&entry, name, &attribute) != nullptr &&
         dwarf_formflag(&attribute, &isSet) == 0 && isSet;
}

inline std::string NameOf(Dwarf_Die& entry) {
  return TextOf(dwarf_diename(&entry));
}

// The entry that an attribute refers to.
inline std::optional<Dwarf_Die> EntryOf(Dwarf_Die& entry, unsigned name) {
  Dwarf_Attribute attribute;
  Dwarf_Die found;
  if (dwarf_attr_integrate(&entry, name, &attribute) == nullptr ||
      dwarf_formref_die(&attribute, &found) == nullptr) {
    return std::nullopt;
  }
  return found;
}

}  // namespace tarn::tools
