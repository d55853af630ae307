#pragma once

#include <dwarf.h>
#include <elfutils/libdw.h>

#include <optional>
#include <string>

#include "platform/text/Text.h"

// Questions to the entries of debug information. Entries are small handles; the data behind them
// belongs to the opened program.
namespace tarn::tools {

// No attribute reaches beyond the debug information. The library looks only when it steps over an
// attribute, so that a last text without an end would be read on and on.
inline bool IsWhole(Dwarf_Die& entry) {
  return dwarf_getattrs(
             &entry, [](Dwarf_Attribute*, void*) { return static_cast<int>(DWARF_CB_OK); }, nullptr,
             0) == 1;
}

// Calls `visit` for each child. False when the debug information is damaged: children that don't
// go forward would never end.
template <typename Visit>
bool ForEachChild(Dwarf_Die& parent, const Visit& visit) {
  Dwarf_Die child;
  int answer = dwarf_child(&parent, &child);
  while (answer == 0) {
    if (!IsWhole(child)) return false;
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

// The entry that an attribute refers to.
inline std::optional<Dwarf_Die> EntryOf(Dwarf_Die& entry, unsigned name) {
  Dwarf_Attribute attribute;
  Dwarf_Die found;
  if (dwarf_attr_integrate(&entry, name, &attribute) == nullptr ||
      dwarf_formref_die(&attribute, &found) == nullptr || !IsWhole(found)) {
    return std::nullopt;
  }
  return found;
}

// A text of the entry, or of the declaration that it completes; empty when there is none.
inline std::string TextAttribute(Dwarf_Die entry, unsigned name) {
  constexpr int kMaxSteps = 8;
  for (int i = 0; i < kMaxSteps; ++i) {
    Dwarf_Attribute attribute;
    if (dwarf_attr(&entry, name, &attribute) != nullptr) {
      return TextOf(dwarf_formstring(&attribute));
    }
    auto described = EntryOf(entry, DW_AT_specification);
    if (!described) described = EntryOf(entry, DW_AT_abstract_origin);
    if (!described) break;
    entry = *described;
  }
  return {};
}

inline std::string NameOf(Dwarf_Die& entry) {
  return TextAttribute(entry, DW_AT_name);
}

}  // namespace tarn::tools
