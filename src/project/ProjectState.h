#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "project/ProjectServices.h"

namespace tarn {

class CXmlNode;

// State of the open project that all its parts share: the tree, which of its nodes are active, and
// the generation numbers by which caches and callers detect changes. The parts read and write the
// data directly; the functions keep the invariants that span several fields. Borrows the services;
// main thread only. Nothing here fails.
struct ProjectState {
  explicit ProjectState(ProjectServices& projectServices);
  ~ProjectState();
  ProjectState(const ProjectState&) = delete;
  ProjectState& operator=(const ProjectState&) = delete;

  bool IsDefaultProject() const { return isDefaultProject != 0; }
  // Returns true if a save would have anything to write.
  bool HasUnsaved() const { return isOpen && (modified != 0 || structureChanged); }

  // Returns the node that commands apply to: the one selected in the window, else the one that was
  // current before a running build, else the current node, the active application or the root.
  // Never null.
  CXmlNode* GetCurrentNode();
  // Clears the record of which node is loaded in the property manager, so that it is loaded again
  // the next time it becomes current.
  void ClearCurrentNode() { currentNode = nullptr; }

  void MarkModified() {
    modified = 1;
    ++changeCount;
  }
  // Records that siblings were reordered.
  void MarkReordered() {
    MarkModified();
    MarkUnpublished();
  }
  // Records a change of the tree that does not set `modified`. The next load or save determines
  // whether the files are affected.
  void MarkStructureChanged() {
    structureChanged = true;
    ++changeCount;
  }
  // Marks the project as unmodified: a close writes nothing until the next change.
  void DropChanges() {
    modified = 0;
    structureChanged = false;
  }
  // Invalidates every pointer into the tree and everything cached about it; call it after nodes
  // were freed or added.
  void MarkTreeChanged();
  // Records that nodes lost their cached values or derived attributes.
  void MarkUnpublished();
  // Invalidates the cached serialized options; call it if stored options, configurations or the
  // tree itself changed.
  void ClearCachedTexts();

  // Clears every pointer into the subtree, which is about to be freed.
  void InvalidatePointersInto(const CXmlNode& node);
  // Clears every pointer into the subtree, then frees it.
  void FreeSubtree(CXmlNode& parent, CXmlNode* node);
  void RemoveAllChildren(CXmlNode& node);
  void RemoveContentChildren(CXmlNode& node);

  // Identity of the project.
  std::string projectPath;
  std::string projectFolder;
  std::string openedBy;  // path as passed by the caller that opened the project
  std::string lastBrowseFolder;
  std::int32_t isDefaultProject = 1;

  // The tree. The root always exists.
  const std::unique_ptr<CXmlNode> projectRoot;
  CXmlNode* activeApplication = nullptr;
  CXmlNode* currentNode = nullptr;  // loaded in the property manager

  bool isOpen = false;     // true between a successful open and the next close
  bool isClosing = false;  // waiting for the host's consent, or writing files
  std::int32_t modified = 1;
  bool structureChanged = false;
  std::int32_t creatingProject = 0;

  // Counts changes of anything that a save would write; occasionally incremented without need.
  std::uint64_t changeCount = 0;
  std::uint64_t projectGeneration = 0;  // counts opens and closes
  // Counts events that free nodes; node pointers obtained at an earlier value are invalid.
  std::uint64_t treeGeneration = 0;
  std::uint64_t publishGeneration = 0;  // counts those, and losses of published values
  std::uint64_t outputGeneration = 0;   // counts those, and changes of output files

  // Serialized stored options by the node that has them, and configurations by application; empty
  // if there are none. Looking for them walks through all children of an application.
  std::unordered_map<const CXmlNode*, std::string> optionTexts;
  std::unordered_map<const CXmlNode*, std::string> configurationTexts;

 private:
  ProjectServices& services_;
};

}  // namespace tarn
