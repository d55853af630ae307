#pragma once

#include <string>
#include <vector>

#include "project/NodeTypes.h"
#include "xml/XmlNode.h"

namespace tarn {

class CToolManagerDriver;

// The applications of a project in the order of a build. An application that another one uses comes
// before it: its output is a file of the other application, or the other one's tool reads it as a
// library or otherwise. Apart from that they keep the order of the project (topological sort by
// depth-first search). Applications that are excluded from the build use nothing.
//
// Looks only at nodes that are published. A project with fewer than two applications costs nothing.
// The nodes are borrowed.
class ApplicationOrder {
 public:
  ApplicationOrder(const NodeTypes& nodeTypes, CToolManagerDriver* toolManager, CXmlNode& project);

  // All applications.
  const std::vector<CXmlNode*>& GetAll() const { return order; }
  // Those that the application uses, directly or by way of others, in their order.
  std::vector<CXmlNode*> GetUsed(const CXmlNode& application) const;
  // Those that it uses directly.
  const std::vector<CXmlNode*>& GetDirectlyUsed(const CXmlNode& application) const;
  // The labels of the first cycle, as in "a -> b -> a": none of the applications in it can be built
  // first. Empty if there is none.
  const std::string& GetCycle() const { return cycle; }
  // The same as a sentence.
  std::string GetProblem() const;

 private:
  enum class State { New, InProgress, Done };
  struct Entry {
    CXmlNode* node = nullptr;
    std::string output;           // its file, as names are compared; may be empty
    std::string fileName;         // the last part of that
    std::vector<CXmlNode*> uses;  // in the order of the project
    State state = State::New;
  };

  void FindUses(Entry& entry);
  void AddUse(Entry& entry, CXmlNode* used);
  void Visit(Entry& entry, std::vector<const CXmlNode*>& chain);
  void ReportCycle(const std::vector<const CXmlNode*>& chain, const CXmlNode& again);
  Entry* Find(const CXmlNode& node);
  const Entry* Find(const CXmlNode& node) const;

  const NodeTypes& types;
  CToolManagerDriver* const tools;
  std::vector<Entry> entries;  // in the order of the project
  std::vector<CXmlNode*> order;
  std::string cycle;
};

}  // namespace tarn
