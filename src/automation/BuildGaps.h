#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "project/ProjectModel.h"

namespace tarn {

// A node that a build passes over without a word, although it looks like a part of its application.
struct BuildGap {
  const CXmlNode& node;
  const char* reason;  // see FindBuildGaps
};

// Returns whether a tool of this name is defined.
using HasToolFunction = std::function<bool(const std::string& tool)>;

// Finds what a build leaves out below a node that takes part in it, the node included, in document
// order. Only the published attributes are read, no file is examined. Reasons:
//   no-tool  an application, or a node of a type that is built from a file, has no TranslateTool;
//            below an application without one nothing more is looked for
//   no-file  a node that is built from a file has no Path
//   no-type  no record of the configuration file defines the node's type, and it, or something
//            below it, has a file
// Nodes that are excluded from the build are no gaps. `onTool`, if any, gets the tool of each node
// that is built.
void FindBuildGaps(const NodeTypes& types, const CXmlNode& node,
                   const std::function<void(const BuildGap&)>& onGap,
                   const std::function<void(std::string_view tool)>& onTool = {});

// The gaps of the whole project, for hosts: an element "BuildGaps" with an element "Application"
// for each application that takes part in a build ("Header", "Path") and below it an element "Node"
// for each gap: "Header", "Path", "Type", "Reason", "IsFatal" ("Yes": the application can't be
// built, or lacks a source). Nodes of the project itself come first: without a type, since they
// would be applications, and "no-application", with sources. A tool that isn't defined is a fatal
// gap of its application with the reason "unknown-tool" and the tool as "Type". The list has the
// attribute "Cycle" if applications use each other's outputs: their labels, as in "a -> b -> a".
std::unique_ptr<CXmlNode> ListBuildGaps(CProjectModel& model, const HasToolFunction& hasTool);

// Returns why no project can be built with the types of the configuration file, or an empty string.
std::string DescribeMissingTypes(const NodeTypes& types);

}  // namespace tarn
