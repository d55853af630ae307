#pragma once

#include <string_view>

#include "project/NodeTypes.h"

namespace tarn {

class CXmlNode;

// Returns true for node attributes that opening and publishing derive again: the output file, the
// marker, and the expansion state. They change with the configuration and with the view.
bool IsDerivedAttribute(std::string_view name);

// Minimizes the difference between a tree about to be written and `base`, the same file as last
// read or written, so that version control shows only what the user changed.
//
// Derived attributes keep their base values, and elements missing in the base get none. An element
// whose content is in a separate file keeps only its label and path; in that file it keeps the path
// by which the base names it. Attributes keep the base's order, and stored options and
// configurations their position; when the last of these was removed, no empty element remains.
void MakeStable(const CXmlNode& base, CXmlNode& tree, const NodeTypes& types);

}  // namespace tarn
