#pragma once

#include <memory>

namespace tarn {

class CXmlNode;

// Merges changed options into the stored ones and returns the result. Two elements match if their
// names are equal and their `Header` values are equal, ignoring case. Of a matching pair the
// attributes come from the new element and the children are merged recursively. Children of the old
// element keep their order; unmatched children of the new one follow them. Nothing that the new
// side omits is removed.
std::unique_ptr<CXmlNode> MergeOptions(const CXmlNode& oldOptions, const CXmlNode& newOptions);

}  // namespace tarn
