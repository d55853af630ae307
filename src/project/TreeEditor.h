#pragma once

#include <cstdint>
#include <memory>

#include "project/DerivedData.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/Publisher.h"

namespace tarn {

// Removes, copies and moves nodes of the tree, with a clipboard of one
// subtree. Borrows everything; main thread only. Operations return 1 if done and 0 if not, also
// while a build is running.
class TreeEditor {
 public:
  enum class Opens { No, Yes };  // whether the parent is expanded

  TreeEditor(ProjectServices& projectServices, ProjectState& projectState,
             const ProjectPaths& projectPaths, DerivedData& derivedData, Publisher& nodePublisher);
  ~TreeEditor();

  // Clears every pointer to the item's subtree, then frees it. Deletes no files. A null name means
  // the current node.
  std::int32_t RemoveItem(const char* itemname);
  // A null node or target means the current node.
  std::int32_t CopyNode(CXmlNode* node);
  std::int32_t PasteNode(CXmlNode* target);
  // Copies, pastes and removes the node. A node is never moved into itself.
  void MoveNode(CXmlNode* node, CXmlNode* target);
  // Removes the nodes of the placeholder project's application.
  void ClearDefaultApplicationItems();
  // Attaches the node as the last child of `parent`, or before a sibling. Leaves `modified` to the
  // caller. Returns nullptr if the views changed the tree again while being notified.
  CXmlNode* AttachNode(CXmlNode& parent, std::unique_ptr<CXmlNode> node, Opens opens,
                       const CXmlNode* before = nullptr);

 private:
  CXmlNode* FindItem(const char* itemname);
  CXmlNode* Paste(CXmlNode* target);

  ProjectServices& services_;
  const NodeTypes& types_;
  const ProjectViews& views_;
  ProjectState& state_;
  const ProjectPaths& paths_;
  DerivedData& derived_;
  Publisher& publisher_;
  std::unique_ptr<CXmlNode> clipboardNode_;
};

}  // namespace tarn
