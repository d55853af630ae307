#pragma once

#include <memory>
#include <string>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn::shipped {

// A path below the folder share of the sources.
std::string Path(const std::string& relative);

// The bytes of a file; the calling test fails when it can't be read.
std::string ReadBytes(const std::string& path);

// The tree of a text, read to its end as the system reads it; null, and the calling test fails,
// when the parser finds a fault.
std::unique_ptr<CXmlNode> Parse(const std::string& text);

// The child elements, comments and the like left out.
std::vector<CXmlNode*> Elements(const CXmlNode& parent);

// The attribute's value, empty when there is none.
std::string Attribute(const CXmlNode& node, const char* name);

}  // namespace tarn::shipped
