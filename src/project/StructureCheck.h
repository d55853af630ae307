#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "project/FileDamage.h"
#include "project/NodeTypes.h"

namespace tarn {

// Reports misplaced elements of a file just read, such as a bad merge produces. They have no effect
// where they are: the build would skip them, and some would be lost in the next save.
//
//   - a node in Options, Configs, Dependencies, Info or PropState, or below a type with IsLeaf;
//   - a second Options or Configs of one node;
//   - Config, Set, Section or Property at a wrong level of Options, and a Config, Set or Section
//     without Header. Other names below Options belong to the property manager;
//   - an application whose attribute Config names none of its configurations;
//   - content of an element that has a separate file, and an element whose file is already being
//     read: for a different element, or for one that contains this element.
//
// Elements of unknown types are allowed wherever nodes are. Takes linear time.
class StructureCheck {
 public:
  // Returns the canonical name of a file.
  using Resolve = std::function<std::string(const std::string& fileName)>;

  StructureCheck(const NodeTypes& nodeTypes, DamageCollector& found, Resolve resolveFile)
      : types_(nodeTypes), collector_(found), resolve_(std::move(resolveFile)) {}

  // Checks the tree read from one file. `outerFiles` are the files being read, including that of
  // `root`.
  void CheckFile(const CXmlNode& root, const std::vector<std::string>& outerFiles);

 private:
  bool IsKnown(const CXmlNode& node) const { return types_.GetNodeType(node) != nullptr; }
  bool HasOwnFile(const CXmlNode& node) const;
  // Returns true if the element is a node of the project rather than a file reported by a tool.
  bool IsNodeAmong(const CXmlNode& holder, const CXmlNode& node) const;

  void CheckChosenConfig(const CXmlNode& root);
  void CheckReferences(const CXmlNode& root, const std::vector<std::string>& outerFiles);
  // `leaf` is the nearest node, this one or an ancestor, that must not contain nodes; or nullptr.
  void CheckNode(const CXmlNode& node, const CXmlNode* leaf, bool isFileRoot);
  void CheckOptions(const CXmlNode& parent, int level);
  void CheckConfigs(const CXmlNode& configs);
  void CheckData(const CXmlNode& holder, const CXmlNode& parent, bool isKept);
  void Report(const CXmlNode& element, const std::string& where, bool isKept);

  const NodeTypes& types_;
  DamageCollector& collector_;
  Resolve resolve_;
};

}  // namespace tarn
