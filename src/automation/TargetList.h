#pragma once

#include <string>

namespace tarn {

class CXmlNode;

// Returns the catalogue of targets as XML, for display: an element "Targets" for each family with
// its label as "Header", an element "Target" for each target with "Header", "Description" (lines
// separated by line feeds), "Datasheet" and "Config", the configuration that its application uses.
// Elements without a label, and those that are neither family nor target, are left out. The
// outermost element has the attribute "Problem" if the catalogue has it.
std::string DescribeTargets(const CXmlNode& catalogue);

}  // namespace tarn
