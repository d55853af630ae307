#pragma once

#include <string_view>

#include "project/NodeTypes.h"
#include "xml/XmlNode.h"

namespace tarn {

// Attributes of nodes that opening and publishing derive again: the output file, the marker, and
// whether the children are shown. They change with the configuration and with the view.
bool IsDerivedAttribute(std::string_view name);

// Gives a tree that is to be written the form that differs least from `base`, the tree of the same
// file as it was read or written last, so that version control shows what the user changed and
// nothing else. Derived attributes stay as they are in the base, and elements that are not there
// have none. An element whose content is in a file of its own keeps label and place alone, and in
// that file the path by which the base names it. Attributes keep the order of the base, and stored
// options and configurations their position; where the last of them was removed, nothing remains.
void MakeStable(const CXmlNode& base, CXmlNode& tree, const NodeTypes& types);

}  // namespace tarn
