#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tarn {

class CXmlNode;

// Two nodes with the same output, in document order.
struct SharedOutput {
  const CXmlNode* first = nullptr;
  const CXmlNode* second = nullptr;
  bool isSameSource = false;  // one source listed twice rather than two sources
};

// Index of an application's nodes by output file, ignoring letter case, for attributing tool
// reports. If several nodes have the same output, the last one in document order is found; a node
// hides its descendants that have their own output. Built in linear time; a lookup takes constant
// time.
//
// Valid until a node or an output of the application changes.
class OutputIndex {
 public:
  using Pair = std::pair<CXmlNode*, CXmlNode*>;

  explicit OutputIndex(CXmlNode& application) { Add(application, application); }

  // Returns the node that a report about this output is attributed to, or nullptr.
  CXmlNode* Find(std::string_view outputFile) const;
  // If several nodes have outputs that differ in letter case only, returns the one that matches
  // exactly; otherwise nullptr.
  CXmlNode* FindAmongSimilar(std::string_view outputFile) const;
  // Pairs of nodes with the same output, in document order.
  const std::vector<Pair>& GetShared() const { return shared_; }

 private:
  void Add(CXmlNode& node, CXmlNode& start);
  void AddOutput(CXmlNode& node, const char* outputFile);

  std::unordered_map<std::string, CXmlNode*> nodes_;       // by output in lower case
  std::unordered_map<std::string, CXmlNode*> exactNodes_;  // outputs that differ in case only
  std::vector<Pair> shared_;
};

// Calls `onShared` for every two nodes of different applications that have the same output.
// Building one application would replace the other's file, so neither would stay up to date.
using OnSharedOutput =
    std::function<void(const CXmlNode& first, const CXmlNode& second, const SharedOutput& shared)>;
void FindOutputsOfSeveral(const std::vector<CXmlNode*>& applications,
                          const OnSharedOutput& onShared);

// Returns true if a build of the application runs a tool for the node.
bool IsBuilt(const CXmlNode& node, const CXmlNode& application);

// Describes the problem of two sources with the same output, in one line.
std::string DescribeSharedOutput(const SharedOutput& shared);

}  // namespace tarn
