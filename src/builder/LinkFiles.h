#pragma once

#include <string>

#include "project/NodeTypes.h"
#include "xml/XmlNode.h"

// Lists, in quoted form, of the files that an application consists of and of those that its
// debugger loads. Pure functions of the tree.
namespace tarn {

// Append the quoted files that the application at `root` passes to its linker, or to its debugger.
void CollectLinkFiles(const NodeTypes& types, std::string& list, const CXmlNode* node,
                      bool useOutput, const CXmlNode* root, const std::string& separator);
void CollectDebugFiles(std::string& list, const CXmlNode* node, const CXmlNode* root,
                       const std::string& separator);
// Returns the tool and the file list that translating the node would use; false if it has no tool.
bool GetToolInput(const NodeTypes& types, const CXmlNode& node, std::string& tool,
                  std::string& fileList);

}  // namespace tarn
