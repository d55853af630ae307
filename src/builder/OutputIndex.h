#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "xml/XmlNode.h"

namespace tarn {

// Two nodes that are built into one output, in document order.
struct SharedOutput {
  const CXmlNode* first = nullptr;
  const CXmlNode* second = nullptr;
  bool isSameSource = false;  // one file that is listed twice; else one would overwrite the other
};

// The nodes of an application by their output files, as reports of tools name them, without regard
// to letter case. Of several nodes with one output the last in document order is reached; a node
// hides those below it that have its own output.
//
// Valid until a node or an output of the application changes.
class OutputIndex {
 public:
  using Pair = std::pair<CXmlNode*, CXmlNode*>;

  explicit OutputIndex(CXmlNode& application) { Add(application, application); }

  // The node for a report of this output, or null.
  CXmlNode* Find(std::string_view outputFile) const;
  // The node that has exactly this output, if others have one that differs in letter case alone;
  // else null.
  CXmlNode* FindAmongSimilar(std::string_view outputFile) const;
  // Pairs of nodes that have the same output, in document order.
  const std::vector<Pair>& GetShared() const { return shared; }

 private:
  void Add(CXmlNode& node, CXmlNode& start);
  void AddOutput(CXmlNode& node, const char* outputFile);

  std::unordered_map<std::string, CXmlNode*> nodes;       // by folded output
  std::unordered_map<std::string, CXmlNode*> exactNodes;  // those that differ in case alone
  std::vector<Pair> shared;
};

// Calls `onShared` for each two nodes of different applications that have one output: a build of
// the one replaces what the other made, and none of both stays up to date.
using OnSharedOutput =
    std::function<void(const CXmlNode& first, const CXmlNode& second, const SharedOutput& shared)>;
void FindOutputsOfSeveral(const std::vector<CXmlNode*>& applications,
                          const OnSharedOutput& onShared);

// Returns whether a tool runs for the node in a build of the application.
bool IsBuilt(const CXmlNode& node, const CXmlNode& application);

// What is wrong with two sources that have one output, as one line.
std::string DescribeSharedOutput(const SharedOutput& shared);

}  // namespace tarn
