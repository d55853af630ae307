#pragma once

#include <cstdint>
#include <string>

#include "project/DefinitionFolders.h"
#include "project/DerivedData.h"
#include "project/FileProtection.h"
#include "project/HostLink.h"
#include "project/Importer.h"
#include "project/ItemAdder.h"
#include "project/NodeOptions.h"
#include "project/ProjectLifecycle.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/Publisher.h"
#include "project/TreeEditor.h"
#include "project/TreeLoader.h"
#include "project/TreeSaver.h"
#include "project/TypesByExtension.h"

namespace tarn {

// The project document: the files of a project, and the tree in memory with its options and derived
// attributes. One per manager; projects are opened and closed in it. Creates and connects the parts
// that do the work, and gives access to them; only the most frequent operations have a shortcut
// here. A Builder builds the project.
//
// Calling sequence: construct it, set the services, open a project.
//
// Threads: everything runs on the main thread (the one that created the model).
//
// Errors: operations return 1 if done and 0 if not, and report most failures to the log only.
//
// Reentrancy: messages to the host are synchronous, and a handler may call any operation. Therefore
// an operation must not use a node after sending a message unless `treeGeneration` or
// `projectGeneration` shows that the tree has not changed in the meantime.
class CProjectModel {
 public:
  // `disk` is borrowed for the lifetime of the model.
  explicit CProjectModel(FileSystem& disk);
  // A builder must have been destroyed before.
  ~CProjectModel();
  CProjectModel(const CProjectModel&) = delete;
  CProjectModel& operator=(const CProjectModel&) = delete;

  // What the parts use; set by the owner before the first operation.
  ProjectServices& Services() { return services_; }
  const ProjectServices& Services() const { return services_; }
  const NodeTypes& Types() const { return services_.types; }
  FileSystem& GetFiles() const { return services_.files; }

  // The parts.
  ProjectState& State() { return state_; }
  const ProjectState& State() const { return state_; }
  const ProjectPaths& Paths() const { return paths_; }
  HostLink& Host() { return host_; }
  TypesByExtension& Extensions() { return extensions_; }
  FileProtection& Protection() { return protection_; }
  const FileProtection& Protection() const { return protection_; }
  DefinitionFolders& Definitions() { return definitions_; }
  const DefinitionFolders& Definitions() const { return definitions_; }
  DerivedData& Derived() { return derived_; }
  TreeSaver& Saver() { return saver_; }
  const TreeSaver& Saver() const { return saver_; }
  TreeLoader& Loader() { return loader_; }
  Publisher& Publishing() { return publisher_; }
  const Publisher& Publishing() const { return publisher_; }
  Importer& Import() { return importer_; }
  const Importer& Import() const { return importer_; }
  ProjectLifecycle& Lifecycle() { return lifecycle_; }
  TreeEditor& Editor() { return editor_; }
  NodeOptions& Options() { return options_; }
  ItemAdder& Items() { return items_; }

  // State of the open project; see ProjectState.
  const std::string& GetProjectPath() const { return state_.projectPath; }
  const std::string& GetProjectFolder() const { return state_.projectFolder; }
  bool IsOpen() const { return state_.isOpen; }
  bool IsDefaultProject() const { return state_.IsDefaultProject(); }
  bool IsModified() const { return state_.modified != 0; }
  std::uint64_t GetTreeGeneration() const { return state_.treeGeneration; }
  CXmlNode& GetProjectRoot() { return *state_.projectRoot; }
  CXmlNode* GetActiveApplication() { return state_.activeApplication; }
  CXmlNode* GetOwnCurrentNode() { return state_.currentNode; }
  CXmlNode* GetCurrentNode() { return state_.GetCurrentNode(); }

  // See Publisher.
  void SetCurrentNode(CXmlNode* node) { publisher_.SetCurrentNode(node); }
  void PublishAll() { publisher_.PublishAll(); }

  // See ProjectLifecycle.
  std::int32_t OpenProject(const char* path, std::int32_t isDefault) {
    return lifecycle_.OpenProject(path, isDefault);
  }
  std::int32_t CloseProject() { return lifecycle_.CloseProject(); }
  std::int32_t SaveProject() { return lifecycle_.SaveProject(); }

 private:
  // In the order in which they depend on each other.
  ProjectServices services_;
  ProjectState state_;
  ProjectPaths paths_;
  HostLink host_;
  TypesByExtension extensions_;
  FileProtection protection_;
  DefinitionFolders definitions_;
  DerivedData derived_;
  TreeLoader loader_;
  TreeSaver saver_;
  Publisher publisher_;
  Importer importer_;
  ProjectLifecycle lifecycle_;
  TreeEditor editor_;
  NodeOptions options_;
  ItemAdder items_;
};

}  // namespace tarn
