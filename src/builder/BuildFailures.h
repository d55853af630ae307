#pragma once

#include <string>
#include <unordered_set>
#include <vector>

namespace tarn {

class CXmlNode;

// Failures of a build that continues after them: how many there may be, and the outputs that are
// missing because of them. Holds pointers to nodes of an unchanged tree.
class BuildFailures {
 public:
  // `limit`: number of failures that end the build; 0 for no limit.
  explicit BuildFailures(int limit) : limit_(limit) {}

  // Counts a failure of the node's tool.
  void Count() { ++count_; }
  // Returns true if the build ends here.
  bool HasReachedLimit() const { return limit_ > 0 && count_ >= limit_; }

  // Records that the node is not built, and neither are these files.
  void AddNode(const CXmlNode& node, const std::vector<std::string>& outputs);
  bool HasFailed(const CXmlNode& node) const { return nodes_.contains(&node); }
  // Returns true if one of the missing files is the node's source, or was read when the node was
  // built last.
  bool IsInputMissing(const CXmlNode& node) const;

 private:
  const int limit_;
  int count_ = 0;
  std::unordered_set<const CXmlNode*> nodes_;
  std::unordered_set<std::string> outputs_;
};

// Returns the headers that the node's last run has read.
std::vector<std::string> HeadersOf(const CXmlNode& node);

}  // namespace tarn
