#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "project/ProjectModel.h"

namespace tarn {

// Node that a build skips silently although it appears to be a part of its application.
struct BuildGap {
  const CXmlNode& node;
  const char* reason;  // see FindBuildGaps
};

// Returns true if a tool of this name is defined.
using HasToolFunction = std::function<bool(const std::string& tool)>;

// Finds everything that a build leaves out in the subtree of a node that takes part in the build,
// including the node itself, in document order. Reads the published attributes only; no file is
// checked. Reasons:
//   no-tool  an application, or a node of a type that is built from a file, has no TranslateTool;
//            nothing is searched below an application without one
//   no-file  a node that is built from a file has no Path
//   no-type  no record of the configuration file defines the node's type, and it, or a descendant
//            of it, has a file
// Nodes that are excluded from the build aren't gaps. `onTool`, if any, is called with the tool of
// each node that is built.
void FindBuildGaps(const NodeTypes& types, const CXmlNode& node,
                   const std::function<void(const BuildGap&)>& onGap,
                   const std::function<void(std::string_view tool)>& onTool = {});

// Returns the gaps of the whole project, for hosts: an element "BuildGaps" with an element
// "Application" ("Header", "Path") for each application that takes part in a build, and below it an
// element "Node" for each gap: "Header", "Path", "Type", "Reason", "IsFatal" ("Yes": the
// application can't be built, or lacks a source). Nodes of the project itself come first: those
// without a type, since they would be applications, and those with sources, with the reason
// "no-application". A tool that isn't defined is a fatal gap of its application, with the reason
// "unknown-tool" and the tool as "Type". If applications use each other's outputs, the list has the
// attribute "Cycle" with their labels, for example "a -> b -> a".
std::unique_ptr<CXmlNode> ListBuildGaps(CProjectModel& model, const HasToolFunction& hasTool);

// Returns the reason why no project can be built with the types of the configuration file, or an
// empty string if there is none.
std::string DescribeMissingTypes(const NodeTypes& types);

}  // namespace tarn
