#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

class CProjectModel;

// Hands the records of the journal to the nodes of the project, a few milliseconds at a time. A
// node gets its record if its tool would be run with the same commands; whether its files are the
// same is left to whoever asks whether it is up to date. Ends early if nodes were freed in between.
class RecordRestore {
 public:
  // The nodes of all applications, or of one.
  explicit RecordRestore(CProjectModel& projectModel);
  RecordRestore(CProjectModel& projectModel, CXmlNode& application);

  // Returns false if nothing is left to do.
  bool Step(std::chrono::milliseconds time);

 private:
  struct Node {
    CXmlNode* node;
    const CXmlNode* application;
  };

  CProjectModel& model_;
  std::uint64_t treeEpoch_;
  std::vector<Node> pending_;  // the next one last, its children not yet
};

}  // namespace tarn
