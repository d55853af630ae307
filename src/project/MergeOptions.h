#pragma once

#include <memory>

#include "xml/XmlNode.h"

namespace tarn {

// Stored options after a change: children of the old element keep their order, those of the new one
// that match none follow. Two elements match when their names are equal and their `Header` values
// are, without regard to case; then the attributes come from the new side and the children are
// merged. What the new side doesn't mention survives.
std::unique_ptr<CXmlNode> MergeOptions(const CXmlNode& oldOptions, const CXmlNode& newOptions);

}  // namespace tarn
