#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "hosts/core/check/CheckScope.h"

namespace tarn::host {

// Checks types, files, outputs and tools of nodes.
class NodeCheck {
 public:
  explicit NodeCheck(CheckScope& checkScope) : scope_(checkScope) {}

  // Checks one node; must be called for all nodes in order.
  void Check(std::size_t number);
  // Adds the findings that require all nodes to be known.
  void Finish();

 private:
  void CheckType(const CheckedNode& node);
  void CheckLabel(const CheckedNode& node, std::size_t number);
  void CheckCycle();
  void CheckFile(const CheckedNode& node);
  void CheckOutput(const CheckedNode& node, std::size_t number);
  void CheckCommand(const CheckedNode& node, const std::string& tool);
  void AddDuplicateOutput(const CheckedNode& node, const CheckedNode& first,
                          const std::string& output);

  CheckScope& scope_;
  std::map<std::string, std::size_t> labels_;  // lower-case application label: first node
  // Real file name of an application: path by which it was listed first.
  std::map<std::string, std::string> listed_;
  std::set<std::string> seenTools_;                         // lower-case
  std::set<std::string> seenCommands_;                      // applications with tools and problems
  std::map<std::string, std::vector<std::string>> needed_;  // program: tools that need it
};

}  // namespace tarn::host
