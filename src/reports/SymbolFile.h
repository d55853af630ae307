#pragma once

#include <memory>
#include <string>

#include "xml/XmlNode.h"

namespace tarn {

// The symbols of a globals file as a flat tree: the top element's name, value and attributes, and
// an element without children for each symbol, in the file's order.
//
// Elements named "Def" are left out. Unless the top element has the attribute "dwarf", so is each
// symbol that has the name, file and line of one before it, case aside; one that lacks any of these
// is nobody's double. A text that ends early or isn't XML gives what could be read. Linear in the
// number of symbols.
std::unique_ptr<CXmlNode> ReadSymbols(const std::string& text);

}  // namespace tarn
