#pragma once

#include "xml/XmlNode.h"

namespace tarn {

// Looks at the children of `parent` from the last to the first for one whose attribute `attrName`
// equals `value`, or, with a null `attrName`, whose element name does; without regard to case. The
// first match goes into `found`, which otherwise stays as it was. Null arguments find nothing.
void FindChildNode(const char* value, const char* attrName, const CXmlNode* parent,
                   CXmlNode*& found);

// Looks at `start` and everything below in document order. A match goes into `found` and hides
// what lies below it, but the search goes on elsewhere, so the last match wins. Elements that only
// carry a node's data are left out: a stored configuration or a dependency is not what its label
// or path stands for.
void FindTreeNode(const char* value, const char* attrName, CXmlNode* start, CXmlNode*& found);

// The node's cached option values, or null when it is not published.
CXmlNode* FindStoredValues(const CXmlNode& node);

}  // namespace tarn
