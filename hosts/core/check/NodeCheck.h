#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "hosts/core/check/CheckScope.h"

namespace tarn::host {

// Checks what nodes are: types, files, outputs and tools.
class NodeCheck {
 public:
  explicit NodeCheck(CheckScope& checkScope) : scope(checkScope) {}

  // To be called for the nodes in their order.
  void Check(std::size_t number);
  // Adds what shows only after all nodes.
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

  CheckScope& scope;
  std::map<std::string, std::size_t> labels;  // of applications, small letters: the first node
  // Of applications with the real names of their files: the first name.
  std::map<std::string, std::string> listed;
  std::set<std::string> seenTools;                         // in small letters
  std::set<std::string> seenCommands;                      // applications with tools and problems
  std::map<std::string, std::vector<std::string>> needed;  // program: tools that need it
};

}  // namespace tarn::host
