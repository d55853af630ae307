#pragma once

#include <string>

#include "xml/XmlNode.h"

namespace tarn {

// The catalogue of targets for whoever only wants to show it, as XML text: an element "Targets" for
// each family with its label as "Header", an element "Target" for each target with "Header",
// "Description" (lines are separated by line feeds), "Datasheet" and "Config", the configuration
// that its application uses. What has no label of its own, or is neither family nor target, is left
// out. The outermost element has "Problem" if the catalogue has.
std::string DescribeTargets(const CXmlNode& catalogue);

}  // namespace tarn
