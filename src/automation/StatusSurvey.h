#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "builder/ApplicationOrder.h"
#include "builder/Builder.h"
#include "xml/XmlNode.h"

namespace tarn {

// Determines which nodes of the project are out of date and why, in parts that a host's event loop
// can afford. Considers published nodes only. Borrows the nodes: valid as long as the tree is of
// the generation that GetTreeGeneration() returns. Main thread only.
class StatusSurvey {
 public:
  using Clock = std::chrono::steady_clock;

  explicit StatusSurvey(Builder& builder);

  // Examines nodes until `deadline`, but at least one step. Returns true once all are examined.
  bool Continue(std::optional<Clock::time_point> deadline);
  // Returns for each application, in build order, the applications that it uses and the nodes that
  // are out of date, as XML.
  std::string ToText() { return status_.ToString(g_xmlDisplayOptions); }
  std::uint64_t GetTreeGeneration() const { return treeGeneration_; }

 private:
  void BeginApplication(CXmlNode& application);
  void EndApplication();
  void Examine(CXmlNode& node);
  bool LacksSource(const CXmlNode& node) const;

  Builder& builder_;
  const std::uint64_t treeGeneration_;
  const ApplicationOrder order_;
  std::size_t nextApplication_ = 0;
  CXmlNode status_;
  // Of the application that is being examined.
  CXmlNode* application_ = nullptr;
  CXmlNode* entry_ = nullptr;     // its element in `status_`
  std::vector<CXmlNode*> nodes_;  // in build order
  std::size_t nextNode_ = 0;
  bool partsAreStale_ = false;
};

}  // namespace tarn
