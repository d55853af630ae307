#pragma once

#include <functional>
#include <string>

#include "project/NodeTypes.h"

// Lists, in quoted form, of the files that an application consists of and of those that its
// debugger loads. Pure functions of the tree.
namespace tarn {

class CXmlNode;

// Calls `onItem(path)` for each file that an application passes to its tool, in tree order: the
// outputs of all nodes below `root` except those excluded from the build or the link.
void ForEachLinkFile(const NodeTypes& types, const CXmlNode* node, bool useOutput,
                     const CXmlNode* root, const std::function<void(const char*)>& onItem);
// Append the quoted files that the application at `root` passes to its linker, or to its debugger.
void CollectLinkFiles(const NodeTypes& types, std::string& list, const CXmlNode* node,
                      bool useOutput, const CXmlNode* root, const std::string& separator);
void CollectDebugFiles(std::string& list, const CXmlNode* node, const CXmlNode* root,
                       const std::string& separator);
// Returns the tool and the file list that translating the node would use; false if it has no tool.
bool GetToolInput(const NodeTypes& types, const CXmlNode& node, std::string& tool,
                  std::string& fileList);

}  // namespace tarn
