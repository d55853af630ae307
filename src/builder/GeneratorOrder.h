#pragma once

#include <vector>

#include "project/NodeTypes.h"

namespace tarn {

class CXmlNode;

// Returns the nodes of an application whose tools make files that others need, such as headers and
// sources: those with the type flag First, at any depth, except below excluded nodes. They are in
// the order of the project, except that a node whose file another one makes comes after that one.
// Quadratic in the number of these nodes, which is small.
std::vector<CXmlNode*> FindGenerators(const NodeTypes& types, CXmlNode& application);

}  // namespace tarn
