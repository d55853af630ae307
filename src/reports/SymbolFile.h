#pragma once

#include <memory>
#include <string>

namespace tarn {

class CXmlNode;

// Returns the symbols of a globals file as a flat tree: the name, value and attributes of the top
// element, with a childless element for each symbol, in file order.
//
// Elements named "Def" are left out. Unless the top element has the attribute "dwarf", duplicates
// are left out too: symbols with the same name, file and line as an earlier one, compared
// case-insensitively. A symbol that lacks one of these is never a duplicate. If the input ends
// early or isn't XML, returns what could be read. Linear in the number of symbols.
std::unique_ptr<CXmlNode> ReadSymbols(const std::string& text);

}  // namespace tarn
