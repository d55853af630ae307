#pragma once

#include <dwarf.h>
#include <elfutils/libdw.h>

#include <optional>
#include <string>

#include "platform/text/Text.h"

// Accessors for the entries (DIEs) of DWARF debug information. Entries are small handles; their
// data belongs to the opened program.
namespace tarn::tools {

// Returns true if all attributes are within the debug information. The library only checks this
// when it skips an attribute, so without this check it would read past the end of a final
// unterminated string.
inline bool IsWhole(Dwarf_Die& entry) {
  return dwarf_getattrs(
             &entry, [](Dwarf_Attribute*, void*) { return static_cast<int>(DWARF_CB_OK); }, nullptr,
             0) == 1;
}

// Calls `visit` for each child. Returns false if the debug information is damaged, for example if a
// sibling does not come after its predecessor, which would cause an endless loop.
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

// Returns true if the flag is set in the entry or in the declaration that it completes.
inline bool HasFlag(Dwarf_Die& entry, unsigned name) {
  Dwarf_Attribute attribute;
  bool isSet = false;
  return dwarf_attr_integrate(&entry, name, &attribute) != nullptr &&
         dwarf_formflag(&attribute, &isSet) == 0 && isSet;
}

// Returns the entry that an attribute refers to, or nullopt.
inline std::optional<Dwarf_Die> EntryOf(Dwarf_Die& entry, unsigned name) {
  Dwarf_Attribute attribute;
  Dwarf_Die found;
  if (dwarf_attr_integrate(&entry, name, &attribute) == nullptr ||
      dwarf_formref_die(&attribute, &found) == nullptr || !IsWhole(found)) {
    return std::nullopt;
  }
  return found;
}

// Returns a string attribute of the entry or of the declaration that it completes; empty if there
// is none.
inline std::string TextAttribute(Dwarf_Die entry, unsigned name) {
  constexpr int kMaxSteps = 8;
  for (int i = 0; i < kMaxSteps; ++i) {
    Dwarf_Attribute attribute;
    if (dwarf_attr(&entry, name, &attribute) != nullptr) {
      return OrEmpty(dwarf_formstring(&attribute));
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
