#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "project/FileDamage.h"
#include "project/NodeTypes.h"

namespace tarn {

// Reports elements of a file that was just read which are where they have no effect, as after a bad
// merge: they would be left out of the build, and some would be gone after the next save.
//
//   - a node in Options, Configs, Dependencies, Info or PropState, or below a type with IsLeaf;
//   - a second Options or Configs of one node;
//   - Config, Set, Section or Property at another level of Options than its own, and a Config, Set
//     or Section without Header. Other names below Options are the property manager's;
//   - an application whose attribute Config names none of its configurations;
//   - content of an element that has its own file, and an element whose file is read already: that
//     of another element, or one that this element is in.
//
// Elements of unknown types are allowed wherever nodes are. Takes linear time.
class StructureCheck {
 public:
  // The one name by which a file is known.
  using Resolve = std::function<std::string(const std::string& fileName)>;

  StructureCheck(const NodeTypes& nodeTypes, DamageCollector& found, Resolve resolveFile)
      : types(nodeTypes), collector(found), resolve(std::move(resolveFile)) {}

  // `outerFiles` are those that are being read, the file of `root` among them.
  void CheckFile(const CXmlNode& root, const std::vector<std::string>& outerFiles);

 private:
  bool IsKnown(const CXmlNode& node) const { return types.GetNodeType(node) != nullptr; }
  bool HasOwnFile(const CXmlNode& node) const;
  // Whether the element is a node of the project and not a file that a tool has reported.
  bool IsNodeAmong(const CXmlNode& holder, const CXmlNode& node) const;

  void CheckChosenConfig(const CXmlNode& root);
  void CheckReferences(const CXmlNode& root, const std::vector<std::string>& outerFiles);
  // `leaf` is the node at or above this one that holds no others, or nullptr.
  void CheckNode(const CXmlNode& node, const CXmlNode* leaf, bool isFileRoot);
  void CheckOptions(const CXmlNode& parent, int level);
  void CheckConfigs(const CXmlNode& configs);
  void CheckData(const CXmlNode& holder, const CXmlNode& parent, bool isKept);
  void Report(const CXmlNode& element, const std::string& where, bool isKept);

  const NodeTypes& types;
  DamageCollector& collector;
  Resolve resolve;
};

}  // namespace tarn
