#pragma once

namespace tarn {

class CXmlNode;

// Searches the direct children of `parent`, last to first, for one whose attribute `attrName`
// equals `value`, ignoring case; a null `attrName` compares the element name. Stores the first
// match in `found`, which is unchanged if there is none. Null arguments find nothing.
void FindChildNode(const char* value, const char* attrName, const CXmlNode* parent,
                   CXmlNode*& found);

// Searches `start` and its descendants in document order. A match is stored in `found` and its
// subtree is skipped, but the search continues, so the last match wins. Skips elements that only
// carry a node's data, because the label or path of a stored configuration or a dependency does not
// identify a node.
void FindTreeNode(const char* value, const char* attrName, CXmlNode* start, CXmlNode*& found);

// Returns the node's cached option values, or nullptr if it is not published.
CXmlNode* FindStoredValues(const CXmlNode& node);

// Returns true if `node` is `top` or one of its descendants; false for nullptr.
bool IsAtOrBelow(const CXmlNode* node, const CXmlNode& top);

}  // namespace tarn
