#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

class CProjectModel;

// Attaches the records of the journal to the nodes of the project, a few milliseconds at a time. A
// node receives its record if its tool would still run the same commands; its files are compared
// later, when the node's state is queried. Ends early if nodes are freed between steps.
class RecordRestore {
 public:
  // Restores the nodes of all applications, or of one.
  explicit RecordRestore(CProjectModel& projectModel);
  RecordRestore(CProjectModel& projectModel, CXmlNode& application);

  // Works for about `time`. Returns false if nothing is left to do.
  bool Step(std::chrono::milliseconds time);

 private:
  struct Node {
    CXmlNode* node;
    const CXmlNode* application;
  };

  CProjectModel& model_;
  std::uint64_t treeEpoch_;
  std::vector<Node> pending_;  // stack; children are pushed after their node
};

}  // namespace tarn
