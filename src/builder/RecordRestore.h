#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "project/NodeTypes.h"
#include "project/ProjectState.h"

namespace tarn {

class BuildInformation;
class CXmlNode;

// Attaches the records of the journal to the nodes of the project, a few milliseconds at a time. A
// node receives its record if its tool would still run the same commands; its files are compared
// later, when the node's state is queried. If nodes are freed between steps, it has to be replaced
// by another, which starts again.
class RecordRestore {
 public:
  // Restores the nodes of all applications, or of one.
  RecordRestore(BuildInformation& information, const ProjectState& state, const NodeTypes& types);
  RecordRestore(BuildInformation& information, const ProjectState& state, CXmlNode& application);

  // Returns true if nodes were freed since the start.
  bool IsTreeStale() const { return state_.treeGeneration != treeGeneration_; }
  // Works for about `time`. Returns false if nothing is left to do.
  bool Step(std::chrono::milliseconds time);

 private:
  struct Node {
    CXmlNode* node;
    const CXmlNode* application;
  };

  BuildInformation& information_;
  const ProjectState& state_;
  std::uint64_t treeGeneration_;
  std::vector<Node> pending_;  // stack; children are pushed after their node
};

}  // namespace tarn
