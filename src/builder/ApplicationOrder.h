#pragma once

#include <string>
#include <vector>

#include "project/NodeTypes.h"

namespace tarn {

class CToolManagerDriver;
class CXmlNode;

// Build order of a project's applications: topological sort by depth-first search. An application
// comes after those it uses, that is, those whose output, or another file that their tool writes,
// is one of its files or is read by its tool, as a library or otherwise. Apart from that, the
// project's order is kept. Applications excluded from the build use nothing.
//
// Considers published nodes only. Compares each of their files with the output of each application,
// which is a short comparison nearly always; a project with fewer than two applications costs
// nothing. Borrows the nodes.
class ApplicationOrder {
 public:
  ApplicationOrder(const NodeTypes& nodeTypes, CToolManagerDriver* toolManager, CXmlNode& project);

  // All applications, in build order.
  const std::vector<CXmlNode*>& GetAll() const { return order_; }
  // Applications that `application` uses directly or indirectly, in build order.
  std::vector<CXmlNode*> GetUsed(const CXmlNode& application) const;
  // Applications that it uses directly.
  const std::vector<CXmlNode*>& GetDirectlyUsed(const CXmlNode& application) const;
  // Returns the labels of the first cycle, as in "a -> b -> a", none of whose applications can be
  // built first. Empty if there is no cycle.
  const std::string& GetCycle() const { return cycle_; }
  // Returns the cycle as a sentence for the user; empty if there is none.
  std::string GetProblem() const;

 private:
  enum class State { New, InProgress, Done };
  struct Entry {
    CXmlNode* node = nullptr;
    std::string output;                 // canonical, for comparisons; may be empty
    std::vector<std::string> products;  // absolute paths of what its tool writes
    std::vector<CXmlNode*> uses;        // in project order
    State state = State::New;
  };

  void FindProducts(Entry& entry) const;
  void FindUses(Entry& entry);
  void AddUse(Entry& entry, CXmlNode* used);
  // One step of the depth-first search. `chain` is the path from the root of the search.
  void Visit(Entry& entry, std::vector<const CXmlNode*>& chain);
  void ReportCycle(const std::vector<const CXmlNode*>& chain, const CXmlNode& again);
  Entry* Find(const CXmlNode& node);
  const Entry* Find(const CXmlNode& node) const;

  const NodeTypes& types_;
  CToolManagerDriver* const tools_;
  std::vector<Entry> entries_;  // in project order
  std::vector<CXmlNode*> order_;
  std::string cycle_;
};

}  // namespace tarn
